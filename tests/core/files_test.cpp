#include "core/files.hpp"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Calls = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

const std::string base = "/tmp/files_test";
const std::string path = base + "/settings.xml";

class Files : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(base);
        std::filesystem::create_directory(base);
    }
    void TearDown() override { std::filesystem::remove_all(base); }

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
    EXPECT_EQ(calls.on_files(), (Calls{"write " + path + ".NEW", "fsync " + path + ".NEW",
                                       "rename " + path + ".NEW " + path, "fsync " + base}));
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

TEST_F(Files, FileThatIsAMountPointIsRewrittenInPlace) {
    write_file(base + "/real", "old content, a long one");
    write_file(path, "");
    ASSERT_EQ(mount((base + "/real").c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    const auto inode = status_of(path).st_ino;
    EXPECT_EQ(replace_file(path, "new"), 0);
    EXPECT_EQ(status_of(path).st_ino, inode);
    EXPECT_EQ(read_file(base + "/real"), "new");
    EXPECT_EQ(replace_file(path, "longer than before"), 0);
    EXPECT_EQ(read_file(base + "/real"), "longer than before");
    ASSERT_EQ(umount(path.c_str()), 0);
    EXPECT_EQ(names(), (Calls{"real", "settings.xml"}));
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
        const DirectoryLock lock(base, 0);
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

TEST_F(Files, LockIsHeldByOneAtATime) {
    {
        const DirectoryLock first(base, 0);
        EXPECT_TRUE(first.acquired());
        const auto start = Clock::now();
        const DirectoryLock second(base, 1);
        EXPECT_FALSE(second.acquired());
        EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
        EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
        EXPECT_FALSE(DirectoryLock(base, 0).acquired());
        EXPECT_TRUE(DirectoryLock("/tmp", 0).acquired());
    }
    EXPECT_TRUE(DirectoryLock(base, 0).acquired());
    EXPECT_EQ(names(), Calls{});
}

TEST_F(Files, LockIsWaitedForWhileAnotherThreadHoldsIt) {
    auto held = std::make_unique<DirectoryLock>(base, 0);
    std::atomic<bool> released = false;
    std::thread waiting([&] {
        const DirectoryLock lock(base, 60);
        EXPECT_TRUE(lock.acquired());
        EXPECT_TRUE(released);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    released = true;
    held.reset();
    waiting.join();
}

TEST_F(Files, LockEndsWithTheProcessThatHeldIt) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const DirectoryLock lock(base, 0);
        [[maybe_unused]] const ssize_t count = write(ends[1], "x", 1);
        pause();
    }
    char ready = 0;
    ASSERT_EQ(read(ends[0], &ready, 1), 1);
    close(ends[0]);
    close(ends[1]);
    EXPECT_FALSE(DirectoryLock(base, 0).acquired());
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_TRUE(DirectoryLock(base, 0).acquired());
}

TEST_F(Files, LockIsNotHandedToAProgramThatIsStartedMeanwhile) {
    {
        const DirectoryLock lock(base, 0);
        ASSERT_EQ(std::system("sleep 1000 >/dev/null 2>&1 & echo $! >/tmp/sleeper"), 0);
    }
    EXPECT_TRUE(DirectoryLock(base, 0).acquired());
    ASSERT_EQ(std::system("kill $(cat /tmp/sleeper)"), 0);
}

TEST_F(Files, DirectoryThatIsMissingHasNothingToBeGuarded) {
    EXPECT_TRUE(DirectoryLock(base + "/none", 0).acquired());
    // One that cannot be opened for lack of descriptors has.
    const DescriptorLimit limit(0);
    EXPECT_FALSE(DirectoryLock(base, 0).acquired());
}

} // namespace qvtc::test
