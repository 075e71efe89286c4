#include "qvtcctl/verb/system_log.hpp"

#include "support/support.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* path = "/tmp/some.log";

TEST(QvtcctlSystemLog, AMarkTellsWhatWasAddedSince) {
    test::write_file(path, "old\n");
    const LogMark mark(path);
    EXPECT_EQ(mark.added(), "");
    test::write_file(path, "old\nnew\n");
    EXPECT_EQ(mark.added(), "new\n");
}

TEST(QvtcctlSystemLog, ALogThatWasBegunAnewIsNewAsAWhole) {
    test::write_file(path, "a long old text\n");
    const LogMark mark(path);
    test::write_file(path, "new\n");
    EXPECT_EQ(mark.added(), "new\n");
}

TEST(QvtcctlSystemLog, AMarkTellsWhetherAnybodyHasWrittenSince) {
    test::write_file(path, "same\n");
    const auto before = std::filesystem::last_write_time(path) - std::chrono::seconds(1);
    std::filesystem::last_write_time(path, before);
    const LogMark mark(path);
    EXPECT_FALSE(mark.is_touched());
    test::write_file(path, "same\n");
    EXPECT_TRUE(mark.is_touched());
    std::filesystem::last_write_time(path, before);
    EXPECT_FALSE(mark.is_touched());
    std::filesystem::resize_file(path, 0);
    std::filesystem::last_write_time(path, before);
    EXPECT_TRUE(mark.is_touched());
    std::filesystem::remove(path);
    const LogMark none(path);
    EXPECT_FALSE(none.is_touched());
    test::write_file(path, "");
    EXPECT_TRUE(none.is_touched());
}

TEST(QvtcctlSystemLog, AMissingLogIsEmpty) {
    std::filesystem::remove(path);
    const LogMark mark(path);
    EXPECT_EQ(mark.added(), "");
    test::write_file(path, "first\n");
    EXPECT_EQ(mark.added(), "first\n");
}

TEST(QvtcctlSystemLog, TheLastComplaintIsALineThatSpeaksOfFailure) {
    EXPECT_EQ(last_complaint("[ERROR] one\n[INFO] password decode error\n[INFO] fine\n"),
              "[INFO] password decode error");
    EXPECT_EQ(last_complaint("[ERROR] one\n[INFO] fine\n"), "[ERROR] one");
    EXPECT_EQ(last_complaint("[INFO] fine\n"), "");
    EXPECT_EQ(last_complaint("[ERROR] \x1b[2J\n"), "[ERROR] \\x1b[2J");
    EXPECT_EQ(last_complaint("[INFO] xfreerdp params:xfreerdp /p:'failover' /f\n"),
              "[INFO] xfreerdp params:xfreerdp /p:*** /f");
}

TEST(QvtcctlSystemLog, TheTailIsTheEndOfAFile) {
    test::write_file(path, "0123456789");
    EXPECT_EQ(file_tail(path, 3), "789");
    EXPECT_EQ(file_tail(path, 100), "0123456789");
    EXPECT_EQ(file_tail("/tmp/none", 100), "");
}

} // namespace
} // namespace qvtc::qvtcctl
