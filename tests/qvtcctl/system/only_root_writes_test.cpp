#include "qvtcctl/system/only_root_writes.hpp"

#include "support/support.hpp"

#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlOnlyRootWrites, WhatOnlyRootCanChangeHasNoFault) {
    ASSERT_EQ(chmod("/tmp", 01777), 0); // as it is everywhere: the sticky bit keeps entries safe
    std::filesystem::create_directories("/tmp/safe");
    test::write_file("/tmp/safe/file", "");
    EXPECT_EQ(other_writer_of("/tmp/safe"), "");
    EXPECT_EQ(other_writer_of("/tmp/safe", "file"), "");
}

TEST(QvtcctlOnlyRootWrites, EveryWayInIsNamed) {
    ASSERT_EQ(chmod("/tmp", 01777), 0);
    std::filesystem::create_directories("/tmp/open/inner");
    test::write_file("/tmp/open/file", "");
    EXPECT_EQ(other_writer_of("/tmp/open", "missing"),
              "/tmp/open/missing cannot be examined: No such file or directory");
    EXPECT_EQ(other_writer_of("/tmp/open", "inner"), "/tmp/open/inner is not a regular file");
    EXPECT_EQ(other_writer_of("/tmp/open/file"), "/tmp/open/file is not a directory");
    std::filesystem::create_symlink("/tmp/open", "/tmp/link");
    EXPECT_EQ(other_writer_of("/tmp/link"), "/tmp/link is a symbolic link");
    ASSERT_EQ(chmod("/tmp/open/file", 0620), 0);
    EXPECT_EQ(other_writer_of("/tmp/open", "file"), "other users can write to /tmp/open/file");
    ASSERT_EQ(chmod("/tmp/open", 0702), 0);
    EXPECT_EQ(other_writer_of("/tmp/open"), "other users can write to /tmp/open");
    EXPECT_EQ(other_writer_of("/tmp/open/inner"), "other users can write to /tmp/open");
}

} // namespace
} // namespace qvtc::qvtcctl
