#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvtc {

/// Turns `escape` and two hexadecimal digits after it into the byte that they
/// denote; an escape without them stands for itself. The result is cut at
/// `limit` bytes.
std::string unescape_hex_pairs(std::string_view text, char escape, std::size_t limit);

/// "0" to "9" are 0 to 9; Deliberate: all letters count, "a" and "A" as 10 up to
/// "z" and "Z" as 35. Anything else is -1.
int hex_value(char c);

enum class HexResult { complete, odd_length, bad_character };
/// Appends to `bytes` a byte of 16 x first + second value for each pair, up to
/// the first bad pair.
HexResult hex_to_bytes(std::string_view text, std::string& bytes);

/// One byte for each pair of digits, the low four bits of each; an odd last
/// character is a byte of its own. No character is refused.
std::string digits_to_bytes(std::string_view text);

/// The letter transform of stored passwords, over "a" to "z" as 1 to 26 and "A"
/// to "Z" as 27 to 52. Deliberate: a character that is no letter counts as the
/// letter before it, and a number without a letter repeats the character before.
std::string encode_letters(std::string_view letters);
std::string decode_letters(std::string_view letters);

} // namespace qvtc
