#include "qvtcctl/base/followed_file.hpp"

#include "support/support.hpp"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

namespace {

constexpr const char* path = "/tmp/growing";

void append(const std::string& text) { std::ofstream(path, std::ios::app) << text; }

} // namespace

TEST(QvtcctlFollowedFile, GivesEachLineOnceWhenItIsWhole) {
    test::write_file(path, "one\n");
    FollowedFile file(path, 1000);
    EXPECT_EQ(file.lines(), "one\n");
    EXPECT_EQ(file.lines(), "");
    append("two\nthr");
    EXPECT_EQ(file.lines(), "two\n");
    append("ee\n");
    EXPECT_EQ(file.lines(), "three\n");
}

TEST(QvtcctlFollowedFile, BeginsWithTheEndOfALongFile) {
    test::write_file(path, std::string(5000, 'x') + "\nend\n");
    FollowedFile file(path, 6);
    EXPECT_EQ(file.lines(), "x\nend\n");
}

TEST(QvtcctlFollowedFile, GoesOnWithTheFileThatTakesTheNamesPlace) {
    test::write_file(path, "one\n");
    FollowedFile file(path, 1000);
    EXPECT_EQ(file.lines(), "one\n");
    append("last\n");
    std::filesystem::rename(path, "/tmp/growing.old");
    append("first\n");
    EXPECT_EQ(file.lines(), "last\nfirst\n");
    append("second\n");
    EXPECT_EQ(file.lines(), "second\n");
}

TEST(QvtcctlFollowedFile, GoesOnWithAFileThatIsEmptied) {
    test::write_file(path, "one\ntwo\nthr");
    FollowedFile file(path, 1000);
    EXPECT_EQ(file.lines(), "one\ntwo\n");
    std::filesystem::resize_file(path, 0);
    append("new\n");
    EXPECT_EQ(file.lines(), "new\n");
}

TEST(QvtcctlFollowedFile, WaitsForAMissingFile) {
    FollowedFile file(path, 1000);
    EXPECT_EQ(file.lines(), "");
    append("one\n");
    EXPECT_EQ(file.lines(), "one\n");
    std::filesystem::remove(path);
    EXPECT_EQ(file.lines(), "");
    append("two\n");
    EXPECT_EQ(file.lines(), "two\n");
}

} // namespace qvtc::qvtcctl
