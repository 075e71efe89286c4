#include "qvtcctl/clients/storage.hpp"

#include "support/support.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

/// A disk of its own with these options.
std::string mounted(const std::string& options) {
    EXPECT_EQ(std::system("mkdir -p /mnt/disk"), 0);
    EXPECT_EQ(std::system(("mount -t tmpfs -o " + options + " disk /mnt/disk").c_str()), 0);
    return "/mnt/disk";
}

TEST(QvtcctlStorage, IsWithoutFaultWhereAFileCanBeStored) {
    EXPECT_EQ(storage_fault(mounted("size=1m")), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_empty("/mnt/disk"));
    EXPECT_EQ(storage_fault(storage_folder), std::nullopt);
}

TEST(QvtcctlStorage, SaysThatTheDiskIsFull) {
    const std::string disk = mounted("size=128k");
    EXPECT_NE(std::system("cat /dev/zero > /mnt/disk/filler 2>/tmp/full"), 0);
    EXPECT_EQ(storage_fault(disk), "No space left on device");
}

TEST(QvtcctlStorage, SaysThatTheDiskTakesNoMoreFiles) {
    EXPECT_EQ(storage_fault(mounted("size=1m,nr_inodes=1")), "No space left on device");
}

TEST(QvtcctlStorage, SaysThatTheDiskIsReadOnly) {
    EXPECT_EQ(storage_fault(mounted("size=1m,ro")), "Read-only file system");
}

TEST(QvtcctlStorage, SaysThatThereIsNoFolder) {
    EXPECT_EQ(storage_fault("/mnt/nothing"), "No such file or directory");
}

TEST(QvtcctlStorage, IsOfNoConcernToAClientWithoutALog) {
    ASSERT_EQ(std::system("mount -t tmpfs -o ro disk /home/root"), 0);
    EXPECT_EQ(log_fault(*find_type("web")), "Read-only file system");
    EXPECT_EQ(log_fault(*find_type("horizon")), std::nullopt);
}

TEST(QvtcctlStorage, IsNamedWithWhatToDo) {
    const Explanation told = explain_storage("Read-only file system");
    EXPECT_TRUE(told.known);
    EXPECT_EQ(told.means, "Nothing can be written in /home/root: Read-only file system. The client "
                          "cannot keep its log there, without which it may not even start.");
    EXPECT_EQ(told.advice,
              "Free some space, or have the disk mounted writable; then launch it again.");
}

} // namespace
} // namespace qvtc::qvtcctl
