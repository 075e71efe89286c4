// The document as a file: how it is replaced, what it keeps, and what keeps it from being lost.

#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "core/files.hpp"
#include "qvtcapi/qvtcapi.h"
#include "store/settings_document.hpp"

#include <fcntl.h>
#include <fstream>
#include <sys/mount.h>
#include <sys/stat.h>
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
    EXPECT_EQ(
        calls.on_files(),
        (Lines{"write /home/root/vpclientData.xml.NEW", "fsync /home/root/vpclientData.xml.NEW",
               "rename /home/root/vpclientData.xml.NEW /home/root/vpclientData.xml",
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

TEST_F(DocumentFile, IsLockedWhereItLies) {
    std::filesystem::create_symlink("/data/settings.xml", document_path);
    OsCalls calls;
    bool free_at_the_link = false;
    bool free_at_the_file = true;
    calls.before("fsync", [&] {
        free_at_the_link = DirectoryLock("/home/root", 0).acquired();
        free_at_the_file = DirectoryLock("/data", 0).acquired();
    });
    EXPECT_EQ(quietly_written("new"), 0);
    EXPECT_TRUE(free_at_the_link);
    EXPECT_FALSE(free_at_the_file);
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
