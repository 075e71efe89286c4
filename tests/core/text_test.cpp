#include "core/text.hpp"

#include <cstdlib>
#include <gtest/gtest.h>

#include "core/faults/guarded_buffer.hpp"

namespace qvtc::test {

TEST(Text, FormatsLikePrintfAtAnyLength) {
    EXPECT_EQ(textf("plain"), "plain");
    EXPECT_EQ(textf("%s=%d%%|%05.1f|%c", "name", -7, 2.25, 'x'), "name=-7%|002.2|x");
    const std::string long_text(100'000, 'a');
    EXPECT_EQ(textf("<%s>", long_text.c_str()), "<" + long_text + ">");
}

TEST(Text, TextOfACReaderEndsAtTheFirstNul) {
    using namespace std::string_literals;
    EXPECT_EQ(c_text(""), "");
    EXPECT_EQ(c_text("abc"), "abc");
    EXPECT_EQ(c_text("ab\0cd\0"s), "ab");
    EXPECT_EQ(c_text("\0ab"s), "");
}

TEST(Text, CutNeverLeavesPartOfACharacter) {
    const struct {
        std::string text;
        std::size_t limit;
        std::string expected;
    } cases[] = {
        {"abc", 3, "abc"},
        {"abcd", 3, "abc"},
        {"abc", 0, ""},
        {"", 0, ""},
        {"a\u00e4b", 1, "a"},
        {"a\u00e4b", 2, "a"},
        {"a\u00e4b", 3, "a\u00e4"},
        {"a\u20acb", 2, "a"},
        {"a\u20acb", 3, "a"},
        {"a\u20acb", 4, "a\u20ac"},
        {"a\U0001f600b", 2, "a"},
        {"a\U0001f600b", 4, "a"},
        {"a\U0001f600b", 5, "a\U0001f600"},
        {"\u20ac", 2, ""},
        {"\u00e4\u00e4", 3, "\u00e4"},
        // Not UTF-8 at all: the bytes count.
        {"\x80\x80\x80\x80\x80\x80", 4, "\x80\x80\x80\x80"},
        {"\xe4\xf6\xfc", 2, "\xe4\xf6"},
    };
    for (const auto& c : cases) EXPECT_EQ(cut(c.text, c.limit), c.expected) << c.limit;
}

TEST(Text, ReplacesEveryOccurrenceOnce) {
    const struct {
        std::string_view text, from, to, expected;
    } cases[] = {
        {"abcabc", "b", "x", "axcaxc"},
        {"aaa", "aa", "b", "ba"},
        {"aaaa", "aa", "aaa", "aaaaaa"},
        {"abc", "abc", "", ""},
        {"abc", "d", "x", "abc"},
        {"abc", "", "x", "abc"},
        {"", "a", "x", ""},
        {"a.b.", ".", "..", "a..b.."},
    };
    for (const auto& c : cases) EXPECT_EQ(replace_all(c.text, c.from, c.to), c.expected) << c.text;
    EXPECT_EQ(replace_all("a&b&", '&', '%'), "a%b%");
    EXPECT_EQ(replace_all("abc", 'x', 'y'), "abc");
    EXPECT_EQ(remove_all("\"a\"b\"", '"'), "ab");
    EXPECT_EQ(remove_all("abc", 'x'), "abc");
}

TEST(Text, OnlyTheWordOnIsOn) {
    EXPECT_TRUE(is_on("on"));
    for (const char* const other : {"", "On", "ON", "off", "on ", " on", "1", "true"})
        EXPECT_FALSE(is_on(other)) << other;
}

TEST(Text, ContainsFindsAPartAnywhere) {
    EXPECT_TRUE(contains("abc", "abc"));
    EXPECT_TRUE(contains("abc", "c"));
    EXPECT_TRUE(contains("abc", ""));
    EXPECT_FALSE(contains("abc", "ac"));
    EXPECT_FALSE(contains("", "a"));
}

TEST(Text, CopyOutStaysWithinTheBuffer) {
    const struct {
        std::size_t size;
        std::string text, expected;
    } cases[] = {
        {0, "abc", ""},
        {1, "abc", std::string(1, '\0')},
        {3, "abc", std::string("ab\0", 3)},
        {4, "abc", std::string("abc\0", 4)},
        {6, "abc", std::string("abc\0##", 6)},
        {2, "", std::string("\0#", 2)},
        {8, std::string(100'000, 'x'), std::string("xxxxxxx\0", 8)},
    };
    for (const auto& c : cases) {
        GuardedBuffer buffer(c.size);
        copy_out(buffer.data(), buffer.size(), c.text);
        EXPECT_EQ(buffer.bytes(), c.expected);
        EXPECT_TRUE(buffer.guards_are_whole());
    }
    copy_out(nullptr, 0, "abc");
}

TEST(Text, CopyOutWholeWritesTheTextAndItsNul) {
    GuardedBuffer buffer(6);
    copy_out_whole(buffer.data(), "abc");
    EXPECT_EQ(buffer.bytes(), std::string("abc\0##", 6));
}

TEST(Text, AllocatedCopyIsAtLeastOfTheAskedSizeAndZeroBehindTheText) {
    using Copy = std::unique_ptr<char, decltype(&std::free)>;
    const Copy padded(allocate_copy("ab", 5), std::free);
    EXPECT_EQ(std::string(padded.get(), 5), std::string("ab\0\0\0", 5));
    const Copy longer(allocate_copy("abcdef", 2), std::free);
    EXPECT_EQ(std::string(longer.get(), 7), std::string("abcdef\0", 7));
    const Copy empty(allocate_copy(""), std::free);
    EXPECT_EQ(std::string(empty.get(), 1), std::string(1, '\0'));
}

} // namespace qvtc::test
