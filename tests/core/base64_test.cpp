#include "core/base64.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

#include "support/support.hpp"

namespace qvtc::test {

namespace {

std::string random_bytes(std::size_t length) {
    static std::mt19937 random(20261115);
    std::string bytes(length, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

/// What the machine's own program makes of the same bytes.
std::string encoded_by_the_machine(const std::string& bytes) {
    write_file("/tmp/bytes", bytes);
    EXPECT_EQ(std::system("base64 -w0 /tmp/bytes >/tmp/text"), 0);
    return read_file("/tmp/text");
}

} // namespace

TEST(Base64, IsWhatTheMachinesOwnProgramMakesOfAllLengthsUpTo100) {
    for (std::size_t length = 0; length <= 100; ++length) {
        const std::string bytes = random_bytes(length);
        const std::string text = base64::encode(bytes);
        EXPECT_EQ(text, encoded_by_the_machine(bytes)) << length;
        EXPECT_EQ(text.size(), (length + 2) / 3 * 4);
        EXPECT_EQ(base64::decode(text), bytes) << length;
    }
}

TEST(Base64, KeepsEveryByteAndLargeData) {
    std::string every_byte;
    for (int byte = 0; byte < 256; ++byte) every_byte += static_cast<char>(byte);
    EXPECT_EQ(base64::encode(every_byte), encoded_by_the_machine(every_byte));
    EXPECT_EQ(base64::decode(base64::encode(every_byte)), every_byte);
    const std::string large = random_bytes(1'000'001);
    EXPECT_EQ(base64::encode(large), encoded_by_the_machine(large));
    EXPECT_EQ(base64::decode(base64::encode(large)), large);
}

TEST(Base64, DecodesByTheRules) {
    const struct {
        std::string_view text;
        std::optional<std::string> expected;
    } cases[] = {
        {"TWE=", "Ma"},
        {"TWE=\n", "Ma"},
        {"TWE=\r\n", "Ma"},
        {"TWE=\n\r\n\r", "Ma"},
        {"", ""},
        {"\n", ""},
        {"TWE", std::nullopt},
        {"TWE=x", std::nullopt},
        {"TWE= ", std::nullopt},
        {"T\nE=", "L\x01"}, // a break in the middle is no break: it counts as zero
        {"TWFu", "Man"},
        {"TQ==", "M"},
        {"====", std::string(1, '\0')},
        {"=AAA", std::string(3, '\0')}, // only the last two characters are padding
        {"AA=A", std::string(2, '\0')},
        {"TWE=TWE=", std::string("Ma\0Ma", 5)},
        {"*W*=", "\x01`"}, // strangers count as zero
        {"\xff\x80\x7f\x01", std::string(3, '\0')},
    };
    for (const auto& c : cases) EXPECT_EQ(base64::decode(c.text), c.expected) << c.text;
}

TEST(Base64, DecodesTheUrlSafeLettersToo) {
    EXPECT_EQ(base64::decode("-_-_"), base64::decode("+/+/"));
    EXPECT_EQ(base64::decode("-_-_"), "\xfb\xff\xbf");
    EXPECT_EQ(base64::encode("\xfb\xff\xbf"), "+/+/");
}

TEST(Base64, TablesAreThoseOfTheStandard) {
    EXPECT_EQ(base64::alphabet, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
    for (std::size_t i = 0; i < base64::alphabet.size(); ++i)
        EXPECT_EQ(base64::decoding_table[static_cast<unsigned char>(base64::alphabet[i])], i);
    EXPECT_EQ(base64::padding, (std::array<std::int32_t, 3>{0, 2, 1}));
}

} // namespace qvtc::test
