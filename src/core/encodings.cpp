#include "core/encodings.hpp"

#include <cctype>

namespace qvtc {

namespace {

constexpr int alphabet_size = 52;

int letter_number(char c, int otherwise) {
    if (c >= 'a' && c <= 'z') return c - 'a' + 1;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 27;
    return otherwise;
}

char numbered_letter(int number, char otherwise) {
    if (number >= 1 && number <= 26) return static_cast<char>('a' + number - 1);
    if (number >= 27 && number <= alphabet_size) return static_cast<char>('A' + number - 27);
    return otherwise;
}

int encoded_number(int number) { return 3 * number % alphabet_size; }

int decoded_number(int number) {
    constexpr int offset_of_remainder[] = {0, 35, 18};
    return number / 3 + offset_of_remainder[number % 3];
}

template <typename Transform>
std::string transform_letters(std::string_view letters, Transform transform) {
    std::string result;
    int number = 0;
    for (const char c : letters) {
        number = letter_number(c, number);
        result += numbered_letter(transform(number), result.empty() ? c : result.back());
    }
    return result;
}

bool is_hex_digit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

unsigned low_digit(char c) {
    const int value = c > '9' ? c - 55 : c - '0';
    return static_cast<unsigned>(value) & 15U;
}

} // namespace

std::string unescape_hex_pairs(std::string_view text, char escape, std::size_t limit) {
    std::string result;
    for (std::size_t at = 0; at < text.size() && result.size() < limit; ++at) {
        const bool escaped = text[at] == escape && text.size() - at > 2 &&
                             is_hex_digit(text[at + 1]) && is_hex_digit(text[at + 2]);
        result += escaped
                      ? static_cast<char>(16 * hex_value(text[at + 1]) + hex_value(text[at + 2]))
                      : text[at];
        if (escaped) at += 2;
    }
    return result;
}

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 87;
    if (c >= 'A' && c <= 'Z') return c - 55;
    return -1;
}

HexResult hex_to_bytes(std::string_view text, std::string& bytes) {
    if (text.size() % 2 != 0) return HexResult::odd_length;
    for (std::size_t at = 0; at < text.size(); at += 2) {
        const int high = hex_value(text[at]);
        const int low = hex_value(text[at + 1]);
        if (high < 0 || low < 0) return HexResult::bad_character;
        bytes += static_cast<char>(16 * high + low);
    }
    return HexResult::complete;
}

std::string digits_to_bytes(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); at += 2) {
        const unsigned first = low_digit(text[at]);
        const bool pair = at + 1 < text.size();
        bytes += static_cast<char>(pair ? first << 4 | low_digit(text[at + 1]) : first);
    }
    return bytes;
}

std::string encode_letters(std::string_view letters) {
    return transform_letters(letters, encoded_number);
}

std::string decode_letters(std::string_view letters) {
    return transform_letters(letters, decoded_number);
}

} // namespace qvtc
