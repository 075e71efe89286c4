// Base64, hexadecimal texts, escapes and the letter transform.

#include <cctype>
#include <string>

#include "core/base64.hpp"
#include "core/encodings.hpp"
#include "fuzzing.hpp"

using namespace qvtc;
using fuzz::require;

namespace {

std::string hex_of(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += digits[static_cast<unsigned char>(c) >> 4U];
        text += digits[static_cast<unsigned char>(c) & 15U];
    }
    return text;
}

std::string escaped(std::string_view bytes, char escape) {
    std::string text;
    for (const char c : bytes) text += escape + hex_of({&c, 1});
    return text;
}

void check_base64(std::string_view input) {
    require(base64::decode(base64::encode(input)) == input, "base64 round trip");
    std::string_view text = input;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    const auto bytes = base64::decode(input);
    require(bytes.has_value() == (text.size() % 4 == 0), "whole groups only");
    if (bytes) require(bytes->size() + 2 >= text.size() / 4 * 3, "three bytes for a group");
}

void check_hex(std::string_view input) {
    std::string bytes;
    require(hex_to_bytes(hex_of(input), bytes) == HexResult::complete && bytes == input,
            "hexadecimal round trip");
    require(digits_to_bytes(hex_of(input)) == input, "digits round trip");
    std::string some;
    const HexResult result = hex_to_bytes(input, some);
    require((result == HexResult::odd_length) == (input.size() % 2 != 0), "odd length");
    require(some.size() <= input.size() / 2, "a byte for each pair");
    require((result == HexResult::complete) == (some.size() * 2 == input.size()), "complete");
    require(digits_to_bytes(input).size() == (input.size() + 1) / 2, "no digit is refused");
}

void check_escapes(std::string_view input) {
    for (const char escape : {'^', '%'}) {
        const std::string all = unescape_hex_pairs(input, escape, input.size());
        require(all.size() <= input.size(), "never longer");
        require(unescape_hex_pairs(escaped(input, escape), escape, input.size()) == input,
                "escape round trip");
        if (input.find(escape) == std::string_view::npos) require(all == input, "nothing escaped");
        for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, input.size() / 2})
            require(unescape_hex_pairs(input, escape, limit) == all.substr(0, limit), "limit");
    }
}

void check_letters(std::string_view input) {
    require(encode_letters(input).size() == input.size(), "as many letters");
    require(decode_letters(input).size() == input.size(), "as many letters");
    for (const char c : input) {
        if (c < 'A' || c > 'z' || std::isalpha(c) == 0 || c == 'Z') return;
    }
    require(decode_letters(encode_letters(input)) == input, "letters round trip");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::text_of(data, size);
    check_base64(input);
    check_hex(input);
    check_escapes(input);
    check_letters(input);
    return 0;
}
