#include "qvtcctl/system/clock.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

TEST(QvtcctlTime, IsReadToTheMinuteOrTheSecond) {
    const auto minute = parse_time("2026-12-31 23:59");
    ASSERT_TRUE(minute);
    EXPECT_EQ(minute->tm_year, 126);
    EXPECT_EQ(minute->tm_mon, 11);
    EXPECT_EQ(minute->tm_mday, 31);
    EXPECT_EQ(minute->tm_hour, 23);
    EXPECT_EQ(minute->tm_min, 59);
    EXPECT_EQ(minute->tm_sec, 0);
    const auto second = parse_time("2024-02-29 00:00:07");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->tm_sec, 7);
}

TEST(QvtcctlTime, WhatIsNoTimeIsRefused) {
    for (const char* const text :
         {"", "now", "2026-12-31", "23:59", "2026-13-01 00:00", "2026-02-30 12:00",
          "2025-02-29 12:00", "2026-12-31 24:01", "2026-12-31 23:60",
          "2026-12-31 23:59:", "2026-12-31 23:59 x", "2026-12-31 23:59&a=b", "$(date)"})
        EXPECT_FALSE(parse_time(text)) << text;
}

} // namespace qvtc::qvtcctl
