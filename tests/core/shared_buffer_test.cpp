#include "core/shared_buffer.hpp"

#include <cstring>
#include <gtest/gtest.h>
#include <thread>

extern "C" {
extern char buffer[204800];
}

namespace qvtc {

TEST(SharedBuffer, HoldsTheLastText) {
    EXPECT_EQ(leave_in_shared_buffer("a longer text"), "a longer text");
    EXPECT_STREQ(buffer, "a longer text");
    EXPECT_EQ(leave_in_shared_buffer("short"), "short");
    EXPECT_STREQ(buffer, "short");
    EXPECT_EQ(leave_in_shared_buffer(""), "");
    EXPECT_STREQ(buffer, "");
}

TEST(SharedBuffer, DropsWhatDoesNotFit) {
    const std::string text(204801, 'x');
    EXPECT_EQ(leave_in_shared_buffer(text), text.substr(0, 204799));
    EXPECT_EQ(std::strlen(buffer), 204799U);
}

TEST(SharedBuffer, EveryThreadGetsAWholeText) {
    auto fill = [](char letter) {
        for (std::size_t i = 0; i < 2000; ++i) {
            const std::string text(i, letter);
            ASSERT_EQ(leave_in_shared_buffer(text), text);
        }
    };
    std::thread other(fill, 'b');
    fill('a');
    other.join();
}

} // namespace qvtc
