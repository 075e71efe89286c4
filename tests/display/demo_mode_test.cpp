#include "display/demo_mode.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

class DemoMode : public test::DisplayTerminal {};

} // namespace

TEST_F(DemoMode, IsOnForAStoredOne) {
    test::capture_stderr([] { EXPECT_EQ(qvdemomode(), 0); });
    const std::pair<const char*, int> cases[] = {{"1", 1},  {"0", 0},   {"", 0},   {"2", 0},
                                                 {"01", 1}, {" 1", 1},  {"1x", 1}, {"11", 0},
                                                 {"on", 0}, {"'1'", 0}, {"-1", 0}};
    for (const auto& [stored, on] : cases) {
        store_settings({{test::demo_key, stored}});
        EXPECT_EQ(qvdemomode(), on) << stored;
        EXPECT_EQ(demomode(), on) << stored;
    }
}

TEST_F(DemoMode, DeliberatelyOnlyTheLowByteCounts) {
    const std::pair<int, const char*> cases[] = {
        {0, "0"}, {1, "1"}, {2, "1"}, {255, "1"}, {256, "0"}, {257, "1"}, {-1, "1"}, {-256, "0"},
    };
    for (int (*const set)(int) : {qvsetdemomode, setdemomode}) {
        for (const auto& [on, stored] : cases) {
            test::capture_stderr([&, value = on] { EXPECT_EQ(set(value), 1); });
            EXPECT_EQ(test::stored_setting(test::demo_key), stored) << on;
        }
    }
    EXPECT_EQ(test::recorded_commands(), test::Texts{});
}

} // namespace qvtc::display
