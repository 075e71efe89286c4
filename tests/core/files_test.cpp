#include "core/files.hpp"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Calls = std::vector<std::string>;

const std::string base = "/tmp/files_test";
const std::string path = base + "/settings.xml";
const std::string draft = base + "/.settings.xml.qvtc-draft";
const std::string kept = base + "/.settings.xml.qvtc-kept";

class Files : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(base);
        std::filesystem::create_directory(base);
    }
    void TearDown() override {
        while (umount2(base.c_str(), MNT_DETACH) == 0) {
        }
        std::filesystem::remove_all(base);
    }

    static Calls names() {
        Calls found;
        for (const auto& entry : std::filesystem::directory_iterator(base))
            found.push_back(entry.path().filename());
        std::sort(found.begin(), found.end());
        return found;
    }
};

struct stat status_of(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(stat(name.c_str(), &status), 0) << name;
    return status;
}

/// The file at `path` is a mount point for as long as it lives.
class MountedFile {
  public:
    explicit MountedFile(const std::string& content) {
        write_file(base + "/real", content);
        write_file(path, "");
        EXPECT_EQ(mount((base + "/real").c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    }
    MountedFile(const MountedFile&) = delete;
    MountedFile& operator=(const MountedFile&) = delete;
    ~MountedFile() { EXPECT_EQ(umount(path.c_str()), 0); }
};

} // namespace

TEST_F(Files, ReadingTellsMissingFromUnreadable) {
    std::string content = "former";
    const std::string large(1'000'001, 'x');
    write_file(path, large);
    EXPECT_EQ(qvtc::read_file(path, content), FileState::read);
    EXPECT_EQ(content, large);
    write_file(path, "");
    EXPECT_EQ(qvtc::read_file(path, content), FileState::read);
    EXPECT_EQ(content, "");

    EXPECT_EQ(qvtc::read_file(base + "/none", content), FileState::missing);
    EXPECT_EQ(qvtc::read_file(path + "/none", content), FileState::missing); // below a file
    std::filesystem::create_symlink("nowhere", base + "/dangling");
    EXPECT_EQ(qvtc::read_file(base + "/dangling", content), FileState::missing);

    EXPECT_EQ(qvtc::read_file(base, content), FileState::unreadable);
    std::filesystem::create_symlink("loop", base + "/loop");
    EXPECT_EQ(qvtc::read_file(base + "/loop", content), FileState::unreadable);
    const DescriptorLimit limit(0);
    EXPECT_EQ(qvtc::read_file(path, content), FileState::unreadable);
}

TEST_F(Files, ReplacedFileIsFlushedBeforeItTakesTheOldOnesPlace) {
    write_file(path, "old content, a long one");
    const OsCalls calls;
    EXPECT_EQ(replace_file(path, "new"), 0);
    EXPECT_EQ(read_file(path), "new");
    EXPECT_EQ(calls.on_files(), (Calls{"write " + draft, "fsync " + draft,
                                       "rename " + draft + " " + path, "fsync " + base}));
    EXPECT_EQ(names(), Calls{"settings.xml"});
}

TEST_F(Files, ShortAndInterruptedWritesAreGoneOnWith) {
    const std::string content = std::string(10'000, 'a') + std::string(777, 'b');
    OsCalls calls;
    calls.hamper_writes(1000);
    EXPECT_EQ(replace_file(path, content), 0);
    EXPECT_EQ(read_file(path), content);
}

TEST_F(Files, ReplacedFileKeepsItsModeAndANewOneIsPrivate) {
    const mode_t former = umask(0);
    EXPECT_EQ(replace_file(path, "new"), 0);
    umask(former);
    EXPECT_EQ(status_of(path).st_mode & 07777U, 0600U);
    for (const mode_t mode : {0644U, 0400U, 0666U, 01755U, 0U}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_EQ(replace_file(path, "newer"), 0);
        EXPECT_EQ(status_of(path).st_mode & 07777U, mode);
    }
}

TEST_F(Files, ReplacedFileKeepsItsOwner) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "only root can give a file away");
    write_file(path, "old");
    ASSERT_EQ(chown(path.c_str(), 1234, 567), 0);
    // A change of owner takes such bits away, so the mode is to be set after it.
    ASSERT_EQ(chmod(path.c_str(), 06755), 0);
    EXPECT_EQ(replace_file(path, "new"), 0);
    EXPECT_EQ(status_of(path).st_uid, 1234U);
    EXPECT_EQ(status_of(path).st_gid, 567U);
    EXPECT_EQ(status_of(path).st_mode & 07777U, 06755U);
}

TEST_F(Files, LinkStaysALinkAndItsTargetIsReplaced) {
    std::filesystem::create_directories(base + "/deep/er");
    const struct {
        const char *link, *target, *file;
    } cases[] = {
        {"absolute", "/tmp/files_test/deep/file", "deep/file"},
        {"relative", "deep/er/file", "deep/er/file"},
        {"to_link", "relative", "deep/er/file"},
        {"deep/up", "../file", "file"},
        {"dangling", "deep/not_yet", "deep/not_yet"},
    };
    for (const auto& c : cases) {
        const std::string link = base + "/" + c.link;
        std::filesystem::create_symlink(c.target, link);
        EXPECT_EQ(replace_file(link, c.link), 0) << c.link;
        EXPECT_EQ(std::filesystem::read_symlink(link), c.target);
        EXPECT_TRUE(
            std::filesystem::is_regular_file(std::filesystem::symlink_status(base + "/" + c.file)));
        EXPECT_EQ(read_file(base + "/" + c.file), c.link);
    }
    std::filesystem::create_symlink("loop", base + "/loop");
    EXPECT_NE(replace_file(base + "/loop/x", "new"), 0);
}

TEST_F(Files, FileThatIsAMountPointIsRewrittenInPlaceWithItsRoomReservedAndACopyKept) {
    const MountedFile file("old content, a long one");
    const auto inode = status_of(path).st_ino;
    {
        const OsCalls calls;
        EXPECT_EQ(replace_file(path, "new"), 0);
        EXPECT_EQ(calls.on_files(),
                  (Calls{"write " + draft, "fsync " + draft, "rename " + draft + " " + path,
                         "rename " + draft + " " + kept, "fsync " + base, "fallocate " + path,
                         "write " + path, "fsync " + path}));
    }
    EXPECT_EQ(status_of(path).st_ino, inode);
    EXPECT_EQ(read_file(base + "/real"), "new");
    EXPECT_EQ(replace_file(path, "longer than before"), 0);
    EXPECT_EQ(read_file(base + "/real"), "longer than before");
    EXPECT_EQ(replace_file(path, ""), 0);
    EXPECT_EQ(read_file(base + "/real"), "");
    EXPECT_EQ(names(), (Calls{"real", "settings.xml"}));
}

TEST_F(Files, FileThatIsRewrittenInPlaceStaysWhenThereIsNoRoom) {
    ASSERT_EQ(mount("none", base.c_str(), "tmpfs", 0, "size=16k"), 0);
    write_file(base + "/real", "old");
    std::filesystem::create_directory("/tmp/elsewhere");
    const std::string mounted = "/tmp/elsewhere/settings.xml";
    write_file(mounted, "");
    ASSERT_EQ(mount((base + "/real").c_str(), mounted.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(replace_file(mounted, std::string(50'000, 'x')), ENOSPC);
    EXPECT_EQ(read_file(mounted), "old");
    EXPECT_EQ(replace_file(mounted, "new"), 0);
    EXPECT_EQ(read_file(mounted), "new");
    ASSERT_EQ(umount(mounted.c_str()), 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/tmp/elsewhere"), {}), 1);
    std::filesystem::remove_all("/tmp/elsewhere");
}

TEST_F(Files, KilledWhileItIsRewrittenInPlaceIsReadFromItsCopyUntilThatIsFinished) {
    const std::string old_text(9000, 'o');
    const std::string new_text(5000, 'n');
    const std::pair<const char*, int> steps[] = {
        {"rename", 1}, {"fsync", 1}, {"fallocate", 0}, {"write", 1}, {"fsync", 2}};
    for (const auto& [step, before] : steps) {
        const MountedFile file(old_text);
        const pid_t writer = fork();
        if (writer == 0) {
            OsCalls calls;
            calls.before(
                step, [] { raise(SIGKILL); }, before);
            replace_file(path, new_text);
            _exit(0);
        }
        int status = 0;
        waitpid(writer, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << step;
        const bool has_begun = file_exists(kept);
        std::string content;
        EXPECT_EQ(read_replaceable_file(path, content), FileState::read);
        EXPECT_EQ(content, has_begun ? new_text : old_text) << step << before;
        finish_rewriting(path);
        EXPECT_EQ(read_file(path), content) << step << before;
        EXPECT_FALSE(file_exists(kept));
        EXPECT_EQ(replace_file(path, "next"), 0);
        EXPECT_EQ(read_file(path), "next");
        EXPECT_EQ(names(), (Calls{"real", "settings.xml"}));
    }
}

TEST_F(Files, FileInAReadOnlyDirectoryIsRewrittenInPlace) {
    write_file("/tmp/real", "old content, a long one");
    write_file(path, "");
    ASSERT_EQ(mount(base.c_str(), base.c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount("/tmp/real", path.c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount(nullptr, base.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    const std::string copy = "/run/.tmp!files_test!settings.xml.qvtc-kept";
    OsCalls calls;
    bool had_copy = false;
    calls.before("fallocate", [&] { had_copy = file_exists(copy); });
    EXPECT_EQ(replace_file(path, "new"), 0);
    EXPECT_EQ(read_file("/tmp/real"), "new");
    EXPECT_TRUE(had_copy);
    EXPECT_FALSE(file_exists(copy));
    EXPECT_EQ(replace_file(base + "/missing", "new"), EROFS);
    ASSERT_EQ(umount(path.c_str()), 0);
}

TEST_F(Files, DeviceBehindALinkStaysADevice) {
    const std::pair<const char*, int> devices[] = {{"/dev/null", 0}, {"/dev/full", ENOSPC}};
    for (const auto& [device, error] : devices) {
        std::filesystem::remove(path);
        std::filesystem::create_symlink(device, path);
        const auto before = status_of(device);
        EXPECT_EQ(replace_file(path, "new"), error) << device;
        const auto after = status_of(device);
        EXPECT_TRUE(S_ISCHR(after.st_mode)) << device;
        EXPECT_EQ(after.st_ino, before.st_ino) << device;
        EXPECT_EQ(after.st_rdev, before.st_rdev) << device;
    }
    EXPECT_EQ(names(), Calls{"settings.xml"});
}

TEST_F(Files, PipeThatNobodyUsesIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(replace_file(path, "new"), ENXIO);
    std::string content;
    EXPECT_EQ(qvtc::read_file(path, content), FileState::read);
    EXPECT_EQ(content, "");
    EXPECT_TRUE(S_ISFIFO(status_of(path).st_mode));
}

TEST_F(Files, FileThatIsTooLargeIsUnreadable) {
    write_file(path, "");
    std::filesystem::resize_file(path, 3UL * 1024 * 1024 * 1024);
    std::string content;
    EXPECT_EQ(qvtc::read_file(path, content), FileState::unreadable);
}

TEST_F(Files, FailedReplacementKeepsTheOldFileAndLeavesNoOther) {
    write_file(path, "old");
    const std::pair<const char*, int> failures[] = {
        {"write", ENOSPC}, {"write", EIO}, {"fsync", EIO}, {"rename", EACCES}};
    for (const auto& [call, error] : failures) {
        OsCalls calls;
        calls.fail(call, error);
        EXPECT_EQ(replace_file(path, "new"), error) << call;
        EXPECT_EQ(read_file(path), "old") << call;
        EXPECT_EQ(names(), Calls{"settings.xml"}) << call;
    }
    EXPECT_EQ(replace_file(base + "/none/settings.xml", "new"), ENOENT);
    EXPECT_EQ(replace_file(path + "/below", "new"), ENOTDIR);
    EXPECT_EQ(replace_file(base, "new"), EISDIR);
    const DescriptorLimit limit(0);
    EXPECT_EQ(replace_file(path, "new"), EMFILE);
}

TEST_F(Files, NoDescriptorIsLeftOpen) {
    const std::size_t before = open_descriptors();
    write_file(path, "old");
    for (const char* const failing : {"", "write", "fsync", "rename"}) {
        OsCalls calls;
        calls.fail(failing, EIO);
        replace_file(path, "new");
        std::string content;
        qvtc::read_file(path, content);
        qvtc::read_file(base, content);
    }
    EXPECT_EQ(open_descriptors(), before);
}

TEST(Paths, DirectoryIsWhatStandsBeforeTheLastSlash) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b", "/a"}, {"/a", "/"}, {"a/b", "a"}, {"a", "."}, {"", "."}, {"/a/b/", "/a/b"}};
    for (const auto& [name, directory] : cases) EXPECT_EQ(directory_of(name), directory) << name;
}

TEST_F(Files, LinksAreFollowedToWhatTheyNameAlsoIfNothingIsThere) {
    std::filesystem::create_symlink("b", base + "/a");
    std::filesystem::create_symlink("/tmp/none", base + "/b");
    EXPECT_EQ(resolve_links(base + "/a"), "/tmp/none");
    EXPECT_EQ(resolve_links("/no/such/path"), "/no/such/path");
    EXPECT_EQ(resolve_links(base), base);
    std::filesystem::create_symlink("loop", base + "/loop");
    resolve_links(base + "/loop"); // ends
}

} // namespace qvtc::test
