#include "qvtcctl/verb/log_lines.hpp"

#include "qvtcctl/base/refusal.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

TEST(QvtcctlLogLines, AreTakenApart) {
    const auto lines = parse_log("2026-11-21 12:00:00 [DEBUG] one\n"
                                 "2026-11-21 12:00:01 [INFO] two [ERROR] x\n"
                                 "2026-11-21 12:00:02 [ERROR] three\n");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].time, "2026-11-21 12:00:00");
    EXPECT_EQ(lines[0].level, LogLevel::debug);
    EXPECT_EQ(lines[0].message, "one");
    EXPECT_EQ(lines[1].level, LogLevel::info);
    EXPECT_EQ(lines[1].message, "two [ERROR] x");
    EXPECT_EQ(lines[2].level, LogLevel::error);
}

TEST(QvtcctlLogLines, AMessageOfSeveralLinesStaysOne) {
    const auto lines = parse_log("the end of an older one\n"
                                 "2026-11-21 12:00:00 [ERROR] first\nsecond\n\n"
                                 "2026-11-21 [INFO] third\n"
                                 "2026-11-21 12:00:00 [NONE] fourth\n"
                                 "2026-11-21 12:00:01 [INFO] \n");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].time, "");
    EXPECT_EQ(lines[0].message, "the end of an older one");
    EXPECT_EQ(lines[1].message,
              "first\nsecond\n2026-11-21 [INFO] third\n2026-11-21 12:00:00 [NONE] fourth");
    EXPECT_EQ(lines[2].message, "");
}

TEST(QvtcctlLogLines, AreWrittenForAScreen) {
    EXPECT_EQ(text_of({"2026-11-21 12:00:00", LogLevel::info, "hello"}),
              "2026-11-21 12:00:00 info  hello\n");
    EXPECT_EQ(text_of({"2026-11-21 12:00:00", LogLevel::error, "a\x1b[2J\nb"}),
              "2026-11-21 12:00:00 error a\\x1b[2J\n    b\n");
    EXPECT_EQ(text_of({"", LogLevel::info, "rest"}), "rest\n");
    EXPECT_EQ(text_of({"2026-11-21 12:00:00", LogLevel::debug, ""}),
              "2026-11-21 12:00:00 debug \n");
}

TEST(QvtcctlLogLines, ALevelHasAName) {
    EXPECT_EQ(require_level("debug"), LogLevel::debug);
    EXPECT_EQ(require_level("error"), LogLevel::error);
    EXPECT_EQ(name_of(LogLevel::info), "info");
    EXPECT_THROW(require_level("ERROR"), Refusal);
    EXPECT_THROW(require_level(""), Refusal);
}

} // namespace qvtc::qvtcctl
