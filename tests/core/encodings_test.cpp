#include "core/encodings.hpp"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace qvtc::test {

namespace {

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

} // namespace

TEST(HexPairs, AreTurnedIntoTheByteTheyDenote) {
    using namespace std::string_view_literals;
    const struct {
        std::string_view text;
        char escape;
        std::size_t limit;
        std::string_view expected;
    } cases[] = {
        {"a^41b", '^', 99, "aAb"},   {"^e4^B8^ad", '^', 99, "\xe4\xb8\xad"},
        {"^5e41", '^', 99, "^41"}, // what has been turned is not looked at again
        {"^00x", '^', 99, "\0x"sv},  {"a%41b", '^', 99, "a%41b"},
        {"a%41b", '%', 99, "aAb"},   {"100%", '%', 99, "100%"},
        {"100%4", '%', 99, "100%4"}, {"%", '%', 99, "%"},
        {"%4", '%', 99, "%4"},       {"%zz", '%', 99, "%zz"},
        {"%4g", '%', 99, "%4g"},     {"%g4", '%', 99, "%g4"},
        {"%%41", '%', 99, "%A"},     {"% 1", '%', 99, "% 1"},
        {"%-1", '%', 99, "%-1"},     {"%0x", '%', 99, "%0x"},
        {"", '%', 99, ""},           {"abc", '%', 2, "ab"},
        {"%41%42%43", '%', 2, "AB"}, {"abc", '%', 0, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(unescape_hex_pairs(c.text, c.escape, c.limit), c.expected) << c.text;
}

TEST(HexValue, CountsDigitsAndAllLetters) {
    for (int code = -128; code < 128; ++code) {
        const char c = static_cast<char>(code);
        const int expected = code >= '0' && code <= '9'   ? code - '0'
                             : code >= 'a' && code <= 'z' ? code - 'a' + 10
                             : code >= 'A' && code <= 'Z' ? code - 'A' + 10
                                                          : -1;
        EXPECT_EQ(hex_value(c), expected) << code;
    }
    EXPECT_EQ(hex_value('f'), 15);
    EXPECT_EQ(hex_value('g'), 16);
    EXPECT_EQ(hex_value('z'), 35);
    EXPECT_EQ(hex_value('Z'), 35);
}

TEST(HexToBytes, StopsAtTheFirstBadPair) {
    const struct {
        std::string_view text;
        HexResult result;
        std::string bytes;
    } cases[] = {
        {"4a4B", HexResult::complete, "JK"},
        {"", HexResult::complete, ""},
        {"4x", HexResult::complete, "a"}, // x counts as 33
        {"zz", HexResult::complete, "\x53"},
        {"00ff", HexResult::complete, std::string("\0\xff", 2)},
        {"4", HexResult::odd_length, ""},
        {"414", HexResult::odd_length, ""},
        {"4-", HexResult::bad_character, ""},
        {"-4", HexResult::bad_character, ""},
        {"4142 443", HexResult::bad_character, "AB"},
    };
    for (const auto& c : cases) {
        std::string bytes;
        EXPECT_EQ(hex_to_bytes(c.text, bytes), c.result) << c.text;
        EXPECT_EQ(bytes, c.bytes) << c.text;
    }
}

TEST(DigitsToBytes, TakesTheLowFourBitsOfEachDigit) {
    const struct {
        std::string_view text;
        std::string bytes;
    } cases[] = {
        {"4a4B", "JK"},
        {"00fF", std::string("\0\xff", 2)},
        {"414", "A\x04"}, // an odd last digit is a byte of its own
        {"a", "\x0a"},
        {"", ""},
        {"gG", std::string(1, '\0')}, // 48 and 16, of which four bits are left
        {"zx", "\x31"},
        {"-/", "\xdf"},
    };
    for (const auto& c : cases) EXPECT_EQ(digits_to_bytes(c.text), c.bytes) << c.text;
    for (int byte = 0; byte < 256; ++byte) {
        char text[3];
        std::snprintf(text, sizeof text, byte % 2 == 0 ? "%02x" : "%02X",
                      static_cast<unsigned>(byte));
        EXPECT_EQ(digits_to_bytes(text), std::string(1, static_cast<char>(byte)));
    }
}

TEST(Letters, AreTripledInAnAlphabetOf52) {
    EXPECT_EQ(encode_letters("abc"), "cfi");
    EXPECT_EQ(decode_letters("cfi"), "abc");
    // The whole alphabet; "Z" has no letter of its own and repeats the one before.
    EXPECT_EQ(encode_letters(letters), "cfiloruxADGJMPSVYbehknqtwzCFILORUXadgjmpsvyBEHKNQTWW");
}

TEST(Letters, DecodingInvertsEncodingForEveryLetter) {
    for (const char letter : letters) {
        const std::string text(1, letter);
        EXPECT_EQ(decode_letters(encode_letters(text)), text);
    }
    const std::string_view all_but_z = letters.substr(0, letters.size() - 1);
    EXPECT_EQ(decode_letters(encode_letters(all_but_z)), all_but_z);
}

TEST(Letters, OthersCountAsTheLetterBeforeThem) {
    const struct {
        std::string_view text, encoded, decoded;
    } cases[] = {
        {"", "", ""},       {"a1", "cc", "II"}, {"c1b", "iif", "aar"}, {"a\xc3\xa4", "ccc", "III"},
        {"1a", "1c", "1I"}, // no letter before it, and no output either
        {"12", "11", "11"}, {"-", "-", "-"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(encode_letters(c.text), c.encoded) << c.text;
        EXPECT_EQ(decode_letters(c.text), c.decoded) << c.text;
    }
}

TEST(Letters, NumberWithoutALetterRepeatsTheCharacterBefore) {
    EXPECT_EQ(encode_letters("aZ"), "cc");
    EXPECT_EQ(encode_letters("aZZb"), "cccf");
    EXPECT_EQ(encode_letters("Z"), "Z");
}

TEST(Letters, ResultHasTheLengthOfTheInput) {
    const std::string text(100'000, 'b');
    EXPECT_EQ(encode_letters(text), std::string(100'000, 'f'));
    EXPECT_EQ(decode_letters(encode_letters(text)), text);
}

} // namespace qvtc::test
