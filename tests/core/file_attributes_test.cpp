#include "core/file_attributes.hpp"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "core/descriptor.hpp"
#include "core/files.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

const std::string base = "/tmp/file_attributes_test";
const std::string path = base + "/file";

class FileAttributes : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(base);
        std::filesystem::create_directory(base);
        write_file(path, "old");
    }
    void TearDown() override { std::filesystem::remove_all(base); }
};

bool label(const std::string& name, const std::string& value) {
    return setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
}

std::string label_of(const std::string& file, const std::string& name) {
    char value[256];
    const ssize_t length = getxattr(file.c_str(), name.c_str(), value, sizeof value);
    return length < 0 ? "none" : std::string(value, static_cast<std::size_t>(length));
}

} // namespace

TEST_F(FileAttributes, GoOverToTheNewFile) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "only root can label a file");
    ASSERT_TRUE(label("trusted.label", "system_u:object_r:etc_t"));
    ASSERT_TRUE(label("security.qvtc", std::string("a\0b", 3)));
    EXPECT_EQ(replace_file(path, "new"), 0);
    EXPECT_EQ(label_of(path, "trusted.label"), "system_u:object_r:etc_t");
    EXPECT_EQ(label_of(path, "security.qvtc"), std::string("a\0b", 3));
    EXPECT_EQ(read_file(path), "new");
}

TEST_F(FileAttributes, ThatTheOldFileDidNotHaveAreTakenAway) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "only root can label a file");
    ASSERT_TRUE(label("trusted.old", "1"));
    const std::string fresh = base + "/fresh";
    const Descriptor file(open(fresh.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_EQ(fsetxattr(file.get(), "trusted.fresh", "1", 1, 0), 0);
    EXPECT_TRUE(take_after(file.get(), path, 0600));
    EXPECT_EQ(label_of(fresh, "trusted.fresh"), "none");
    EXPECT_EQ(label_of(fresh, "trusted.old"), "1");
}

TEST_F(FileAttributes, OfAMissingFileAreItsModeAlone) {
    const std::string fresh = base + "/fresh";
    const Descriptor file(open(fresh.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    EXPECT_TRUE(take_after(file.get(), base + "/none", 0640));
    struct stat status {};
    ASSERT_EQ(fstat(file.get(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_FALSE(take_after(-1, base + "/none", 0640));
}

} // namespace qvtc::test
