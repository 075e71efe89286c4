#include "qvtcctl/base/hexadecimal.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlHexadecimal, TwoDigitsAByte) {
    EXPECT_EQ(hexadecimal_of("Win10"), "57696e3130");
    EXPECT_EQ(hexadecimal_of("\xFF"), "ff");
    EXPECT_EQ(text_of_hexadecimal("57696e3130"), "Win10");
    EXPECT_EQ(text_of_hexadecimal("4a4B"), "JK");
    EXPECT_EQ(text_of_hexadecimal(""), "");
}

TEST(QvtcctlHexadecimal, OtherDigitsAndOddNumbersAreRefused) {
    for (const std::string_view bad : {"4", "4x", "Win10", "4 ", "-1", "g0"}) {
        EXPECT_EQ(text_of_hexadecimal(bad), std::nullopt) << bad;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
