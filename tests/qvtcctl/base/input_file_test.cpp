#include "qvtcctl/base/input_file.hpp"

#include "support/support.hpp"

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* path = "/tmp/some.file";

TEST(QvtcctlInputFile, ReadsARegularFile) {
    test::write_file(path, "0123456789");
    const InputFile file(path);
    EXPECT_TRUE(file.is_open());
    EXPECT_EQ(file.fault(), "");
    EXPECT_EQ(file.size(), 10U);
    EXPECT_EQ(file.read_from(0, 100), "0123456789");
    EXPECT_EQ(file.read_from(7, 2), "78");
}

TEST(QvtcctlInputFile, AMissingFileIsMissing) {
    const InputFile file("/tmp/none");
    EXPECT_FALSE(file.is_open());
    EXPECT_TRUE(file.is_missing());
    EXPECT_EQ(file.fault(), "No such file or directory");
    EXPECT_EQ(file.read_from(0, 1), "");
}

TEST(QvtcctlInputFile, WhatIsNoRegularFileIsNotRead) {
    ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
    EXPECT_EQ(InputFile("/tmp/fifo").fault(), "it is a FIFO, not a regular file");
    EXPECT_EQ(InputFile("/tmp").fault(), "it is a directory, not a regular file");
    EXPECT_EQ(InputFile("/dev/zero").fault(), "it is a device, not a regular file");
    EXPECT_FALSE(InputFile("/tmp/fifo").is_missing());
}

TEST(QvtcctlInputFile, ReadingEndsAboveTheLimit) {
    const int zeros = open("/dev/zero", O_RDONLY | O_CLOEXEC);
    EXPECT_GT(read_up_to(zeros, 100).size(), 100U);
    close(zeros);
    const int directory = open("/tmp", O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(read_up_to(directory, 100), "");
    EXPECT_EQ(errno, EISDIR);
    close(directory);
}

} // namespace
} // namespace qvtc::qvtcctl
