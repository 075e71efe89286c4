#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvtc::base64 {

/// The standard alphabet of RFC 4648, with padding.
inline constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The number of each character of the alphabet at the character's code. "-" and
/// "_" are there as well, as "+" and "/": stored passwords cannot hold a "+",
/// which stands for "=" there. Any other character counts as zero.
inline constexpr std::array<std::uint8_t, 256> decoding_table = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    table['-'] = 62;
    table['_'] = 63;
    return table;
}();

/// How many "=" end the text of so many bytes, by their number modulo 3.
inline constexpr std::array<std::int32_t, 3> padding = {0, 2, 1};

std::string encode(std::string_view bytes);

/// Decodes text without its trailing line breaks; nothing when what is left is
/// no multiple of four characters.
std::optional<std::string> decode(std::string_view text);

} // namespace qvtc::base64
