#include "qvtcctl/base/text.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::string_literals;

TEST(QvtcctlText, Utf8IsOnlyWholeShortestForms) {
    for (const std::string& good : {""s, "abc"s, "\xC3\xA4"s, "\xE4\xB8\xAD"s, "\xF0\x9F\x98\x80"s,
                                    "\xED\x9F\xBF"s, "\xF4\x8F\xBF\xBF"s}) {
        EXPECT_TRUE(is_utf8(good)) << good;
    }
    for (const std::string& bad : {"\x80"s, "\xC3"s, "\xC3("s, "\xC0\x80"s, "\xE0\x80\x80"s,
                                   "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xFF"s, "ab\xE4\xB8"s}) {
        EXPECT_FALSE(is_utf8(bad)) << bad;
    }
}

TEST(QvtcctlText, PrintableShowsWhatAScreenMustNotGet) {
    EXPECT_EQ(printable("M\xC3\xA4rz \xE4\xB8\xAD"), "M\xC3\xA4rz \xE4\xB8\xAD");
    EXPECT_EQ(printable("a\x1b[31mb\n\x7f"), "a\\x1b[31mb\\x0a\\x7f");
    EXPECT_EQ(printable("\xC2\x9B"), "\\xc2\\x9b");
    EXPECT_EQ(printable("a\xFF"), "a\\xff");
    EXPECT_EQ(printable("a\0b"s), "a\\x00b");
}

TEST(QvtcctlText, PrintableShowsWhatWouldHideOrTurnTheTextAroundIt) {
    EXPECT_EQ(printable("a\u202Eb"), "a\\xe2\\x80\\xaeb");
    for (const std::string& hidden : {"\u061C"s, "\u200B"s, "\u200F"s, "\u2028"s, "\u2066"s,
                                      "\u2069"s, "\uFEFF"s, "\U000E0041"s}) {
        EXPECT_TRUE(printable(hidden).starts_with("\\x")) << hidden;
    }
    EXPECT_EQ(printable("\u2013\u2010\u2030\u2070"), "\u2013\u2010\u2030\u2070");
}

TEST(QvtcctlText, PrintableLinesKeepTheirNewlines) {
    EXPECT_EQ(printable_lines(""), "");
    EXPECT_EQ(printable_lines("a\x1b\n\nb\r\n"), "a\\x1b\n\nb\\x0d\n");
    EXPECT_EQ(printable_lines("a\nb"), "a\nb");
}

TEST(QvtcctlText, WidthCountsColumnsNotBytes) {
    EXPECT_EQ(display_width(""), 0U);
    EXPECT_EQ(display_width("abc"), 3U);
    EXPECT_EQ(display_width("M\xC3\xA4rz"), 4U);
    EXPECT_EQ(display_width("\xE4\xB8\xAD\xE6\x96\x87"), 4U);
    EXPECT_EQ(display_width("e\xCC\x81"), 1U);
    EXPECT_EQ(display_width("\xFF"), 1U);
}

TEST(QvtcctlText, LinesEndAtNewlines) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(split_lines(""), Lines{});
    EXPECT_EQ(split_lines("a"), Lines{"a"});
    EXPECT_EQ(split_lines("a\n"), Lines{"a"});
    EXPECT_EQ(split_lines("\na\n\nb"), (Lines{"", "a", "", "b"}));
}

TEST(QvtcctlText, TrimmedHasNoWhiteSpaceAround) {
    EXPECT_EQ(trimmed(" \ta b\r\n"), "a b");
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_TRUE(is_blank("  "));
    EXPECT_TRUE(is_blank(""));
    EXPECT_FALSE(is_blank(" x"));
}

TEST(QvtcctlText, OnlyWholeCharactersFitIntoColumns) {
    EXPECT_EQ(first_columns("abc", 2), "ab");
    EXPECT_EQ(first_columns("abc", 5), "abc");
    EXPECT_EQ(first_columns("a\u4e2db", 2), "a"); // two columns wide
    EXPECT_EQ(first_columns("a\u4e2db", 3), "a\u4e2d");
    EXPECT_EQ(first_columns("e\u0301x", 1), "e\u0301"); // an accent of its own
    EXPECT_EQ(first_columns("abc", 0), "");
}

TEST(QvtcctlText, NumbersHaveNineDigitsAtMost) {
    EXPECT_EQ(parse_number("999999999"), 999999999U);
    EXPECT_EQ(parse_number("007"), 7U);
    for (const std::string_view bad : {"", "1000000000", "+1", "-1", " 1", "1a"}) {
        EXPECT_EQ(parse_number(bad), std::nullopt) << bad;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
