// The document as a file: how it is replaced, what it keeps, and what keeps it from being lost.

#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "core/file_lock.hpp"
#include "qvtcapi/qvtcapi.h"
#include "store/settings_document.hpp"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

const std::string old_text = document_of("configItem", "k", "old");
const std::string new_text = document_of("configItem", "k", "new");

class DocumentFile : public SettingsDocument {
  protected:
    void SetUp() override {
        SettingsDocument::SetUp();
        std::filesystem::remove_all("/data");
        std::filesystem::create_directory("/data");
    }
};

struct stat status_of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

int quietly_written(const std::string& value) {
    int result = 1;
    capture_stderr([&] { result = written("configItem", "k", value); });
    return result;
}

/// A file system of its own at /home/root, for as long as it lives.
class HomeFileSystem {
  public:
    explicit HomeFileSystem(const char* options) {
        EXPECT_EQ(mount("none", "/home/root", "tmpfs", 0, options), 0);
    }
    HomeFileSystem(const HomeFileSystem&) = delete;
    HomeFileSystem& operator=(const HomeFileSystem&) = delete;
    ~HomeFileSystem() { EXPECT_EQ(umount2("/home/root", MNT_DETACH), 0); }
};

/// Writes until there is no more room.
void fill(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const std::string page(4096, 'x');
    for (std::size_t size = page.size(); size > 0;) {
        if (write(file, page.data(), size) < 0) size /= 2;
    }
    close(file);
}

std::string not_saved(const char* reason) {
    return std::string("[ERROR] @xmlwrite /home/root/vpclientData.xml not saved: ") + reason;
}

} // namespace

TEST_F(DocumentFile, IsFlushedBeforeItTakesTheOldOnesPlace) {
    write_file(document_path, old_text);
    const OsCalls calls;
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_EQ(calls.on_files(),
              (Lines{"write /home/root/.vpclientData.xml.qvtc-draft",
                     "fsync /home/root/.vpclientData.xml.qvtc-draft",
                     "rename /home/root/.vpclientData.xml.qvtc-draft /home/root/vpclientData.xml",
                     "fsync /home/root"}));
    EXPECT_EQ(document_text(), new_text);
    EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
}

TEST_F(DocumentFile, IsPrivateWhenNew) {
    const mode_t former = umask(0);
    EXPECT_EQ(quietly_written("new"), 0);
    umask(former);
    EXPECT_EQ(status_of(document_path).st_mode & 07777U, 0600U);
}

TEST_F(DocumentFile, KeepsItsMode) {
    write_file(document_path, old_text);
    ASSERT_EQ(chmod(document_path.c_str(), 0640), 0);
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_EQ(xml_del_itemNode("none"), 0);
    EXPECT_EQ(status_of(document_path).st_mode & 07777U, 0640U);
}

TEST_F(DocumentFile, KeepsItsOwner) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "only root can give a file away");
    write_file(document_path, old_text);
    ASSERT_EQ(chown(document_path.c_str(), 1234, 567), 0);
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_EQ(xml_del_itemNode("none"), 0);
    EXPECT_EQ(status_of(document_path).st_uid, 1234U);
    EXPECT_EQ(status_of(document_path).st_gid, 567U);
}

TEST_F(DocumentFile, LinkStaysALink) {
    const std::string targets[] = {"/data/settings.xml", "../../data/settings.xml"};
    for (const std::string& target : targets) {
        for (const bool dangling : {false, true}) {
            std::filesystem::remove(document_path);
            std::filesystem::remove("/data/settings.xml");
            if (!dangling) write_file("/data/settings.xml", old_text);
            std::filesystem::create_symlink(target, document_path);
            EXPECT_EQ(quietly_written("new"), 0) << target;
            EXPECT_EQ(std::filesystem::read_symlink(document_path), target);
            EXPECT_EQ(read_file("/data/settings.xml"), new_text);
            EXPECT_EQ(names_in("/data"), Lines{"settings.xml"});
            EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
            EXPECT_EQ(value_read("configItem", "k"), "new");
        }
    }
    EXPECT_EQ(status_of("/data/settings.xml").st_mode & 07777U, 0600U);
}

TEST_F(DocumentFile, IsLockedByAFileThatOnlyRootCanOpen) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "only root can become another user");
    OsCalls calls;
    bool locked = false;
    calls.before("fsync", [&] {
        const LockWait at_once(std::chrono::seconds(0));
        locked = FileLock("/run/qvtcapi.lock").error() == ETIMEDOUT;
    });
    EXPECT_EQ(quietly_written("old"), 0);
    EXPECT_TRUE(locked);
    EXPECT_EQ(status_of("/run/qvtcapi.lock").st_mode, S_IFREG | 0600U);
    // Whatever another user locks, nobody has to wait for it.
    const pid_t other = fork();
    if (other == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(1);
        for (const char* const path : {"/run/qvtcapi.lock", "/home/root", "/run"}) {
            const int file = open(path, O_RDONLY | O_CLOEXEC);
            if (file >= 0) flock(file, LOCK_EX);
        }
        raise(SIGSTOP);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(other, &status, WUNTRACED), other);
    ASSERT_TRUE(WIFSTOPPED(status));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
    EXPECT_EQ(document_text(), new_text);
    kill(other, SIGKILL);
    waitpid(other, &status, 0);
}

TEST_F(DocumentFile, IsSavedWhereNoLockCanBeKept) {
    ASSERT_EQ(mount("none", "/run", "tmpfs", MS_RDONLY, ""), 0);
    EXPECT_EQ(quietly_written("new"), 0);
    EXPECT_EQ(document_text(), new_text);
    ASSERT_EQ(umount("/run"), 0);
}

TEST_F(DocumentFile, MountedAloneIsRewrittenInPlace) {
    write_file("/data/real.xml", document_of("configItem", "k", std::string(5000, 'x')));
    write_file(document_path, "");
    ASSERT_EQ(mount("/data/real.xml", document_path.c_str(), nullptr, MS_BIND, nullptr), 0);
    const auto inode = status_of(document_path).st_ino;
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_EQ(status_of(document_path).st_ino, inode);
    EXPECT_EQ(read_file("/data/real.xml"), new_text); // and no rest of the longer one
    EXPECT_EQ(value_read("configItem", "k"), "new");
    ASSERT_EQ(umount(document_path.c_str()), 0);
    EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(DocumentFile, MountedAloneOnAFullDiskStays) {
    ASSERT_EQ(mount("none", "/data", "tmpfs", 0, "size=32k"), 0);
    write_file("/data/real.xml", document_of("configItem", "k", std::string(11'000, 'x')));
    fill("/data/filler");
    const std::string before = read_file("/data/real.xml");
    write_file(document_path, "");
    ASSERT_EQ(mount("/data/real.xml", document_path.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(written("configItem", "more", std::string(6000, 'y')), 0);
    EXPECT_EQ(document_text(), before);
    EXPECT_EQ(log_lines(), Lines{not_saved("No space left on device")});
    ASSERT_EQ(umount(document_path.c_str()), 0);
    ASSERT_EQ(umount("/data"), 0);
    EXPECT_EQ(names_in("/home/root"), (Lines{"system.log", "vpclientData.xml"}));
}

TEST_F(DocumentFile, TornByAWriterThatWasKilledIsReadAndRepairedFromItsCopy) {
    write_file("/data/real.xml", old_text);
    write_file(document_path, "");
    ASSERT_EQ(mount("/data/real.xml", document_path.c_str(), nullptr, MS_BIND, nullptr), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        OsCalls calls;
        calls.before(
            "fsync", [] { raise(SIGKILL); }, 2); // of the draft, the directory, the file
        written("configItem", "k", "new");
        _exit(0);
    }
    waitpid(writer, nullptr, 0);
    write_file("/data/real.xml", new_text.substr(0, 60)); // as if it had come no further
    EXPECT_EQ(value_read("configItem", "k"), "new");
    EXPECT_EQ(xml_del_itemNode("none"), 0);
    EXPECT_EQ(document_text(), new_text);
    ASSERT_EQ(umount(document_path.c_str()), 0);
    EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
}

TEST_F(DocumentFile, LinkedToADeviceLeavesTheDevice) {
    std::filesystem::create_symlink("/dev/null", document_path);
    EXPECT_EQ(quietly_written("new"), 0);
    EXPECT_TRUE(S_ISCHR(status_of("/dev/null").st_mode));
    EXPECT_TRUE(std::filesystem::is_symlink(document_path));
}

TEST_F(DocumentFile, StaysWhenTheDiskIsFull) {
    // No room, and then no room for one more file.
    for (const char* const options : {"size=64k,mode=755", "size=64k,nr_inodes=4,mode=755"}) {
        const HomeFileSystem disk(options);
        write_file(document_path, old_text);
        qvlog(1, "before"); // its page has room for more
        fill("/home/root/filler");
        const Lines names = names_in("/home/root");
        EXPECT_EQ(written("configItem", "k", "new"), 0);
        EXPECT_EQ(xml_del_itemNode("configItem"), 0);
        EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), 0);
        EXPECT_EQ(document_text(), old_text) << options;
        EXPECT_EQ(names_in("/home/root"), names);
        const std::string line = not_saved("No space left on device");
        EXPECT_EQ(log_lines(), (Lines{"[INFO] before", line, line, line}));
        std::filesystem::remove("/home/root/filler");
        EXPECT_EQ(written("configItem", "k", "new"), 0);
        EXPECT_EQ(document_text(), new_text);
    }
}

TEST_F(DocumentFile, ThatIsEmptyIsReportedOnStandardErrorAndReplaced) {
    write_file(document_path, "");
    EXPECT_EQ(capture_stderr([] { EXPECT_EQ(value_read("configItem", "k"), std::nullopt); }),
              "/home/root/vpclientData.xml:1: parser error : Document is empty\n\n^\n");
    EXPECT_EQ(quietly_written("new"), 0);
    EXPECT_EQ(document_text(), new_text);
}

TEST_F(DocumentFile, StaysWhenItCannotBeSaved) {
    const std::pair<const char*, int> failures[] = {
        {"write", EIO}, {"fsync", EIO}, {"rename", EACCES}};
    for (const auto& [call, error] : failures) {
        write_file(document_path, old_text);
        {
            OsCalls calls;
            // The log shares the call that is to fail.
            calls.fail(call, error);
            EXPECT_EQ(written("configItem", "k", "new"), 0) << call;
        }
        EXPECT_EQ(document_text(), old_text) << call;
    }
    EXPECT_EQ(log_lines(),
              (Lines{not_saved("Input/output error"), not_saved("Permission denied")}));
}

TEST_F(DocumentFile, StaysOnAFileSystemThatIsReadOnly) {
    const HomeFileSystem disk("size=64k,mode=755");
    write_file(document_path, old_text);
    ASSERT_EQ(mount("none", "/home/root", nullptr, MS_REMOUNT | MS_RDONLY, "size=64k"), 0);
    EXPECT_EQ(written("configItem", "k", "new"), 0);
    EXPECT_EQ(document_text(), old_text);
    EXPECT_EQ(value_read("configItem", "k"), "old");
}

TEST_F(DocumentFile, MissingDirectoryIsAFailedSave) {
    std::filesystem::rename("/home/root", "/home/away");
    EXPECT_EQ(quietly_written("new"), 0);
    EXPECT_FALSE(file_exists("/home/root"));
    std::filesystem::rename("/home/away", "/home/root");
}

TEST_F(DocumentFile, ThatCannotBeReadIsNeverReplaced) {
    const auto expect_refusal = [](const char* why) {
        capture_stderr([why] {
            EXPECT_EQ(value_read("configItem", "k"), std::nullopt) << why;
            EXPECT_EQ(written("configItem", "k", "new"), -1) << why;
            EXPECT_EQ(xml_del_itemNode("configItem"), -1) << why;
            EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1) << why;
        });
    };
    std::filesystem::create_directory(document_path);
    expect_refusal("a directory");
    EXPECT_TRUE(std::filesystem::is_directory(document_path));
    std::filesystem::remove(document_path);

    std::filesystem::create_symlink("vpclientData.xml", document_path);
    expect_refusal("a link to itself");
    EXPECT_TRUE(std::filesystem::is_symlink(document_path));
    std::filesystem::remove(document_path);

    write_file(document_path, "");
    std::filesystem::resize_file(document_path, 3UL * 1024 * 1024 * 1024);
    expect_refusal("too large");
    EXPECT_EQ(std::filesystem::file_size(document_path), 3UL * 1024 * 1024 * 1024);
    std::filesystem::remove(document_path);

    write_file(document_path, old_text);
    for (const unsigned descriptors : {0U, 1U}) {
        const DescriptorLimit limit(descriptors);
        EXPECT_EQ(written("configItem", "k", "new"), -1) << descriptors;
        EXPECT_EQ(xml_del_itemNode("configItem"), -1) << descriptors;
        EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1) << descriptors;
    }
    EXPECT_EQ(document_text(), old_text);
    EXPECT_EQ(names_in("/home/root"),
              (file_exists("/home/root/system.log") ? Lines{"system.log", "vpclientData.xml"}
                                                    : Lines{"vpclientData.xml"}));
}

TEST_F(DocumentFile, ShortAndInterruptedWritesLoseNothing) {
    const std::string value(50'000, 'v');
    OsCalls calls;
    calls.hamper_writes(1000);
    EXPECT_EQ(quietly_written(value), 0);
    EXPECT_EQ(document_text(), document_of("configItem", "k", value));
}

} // namespace qvtc::test
