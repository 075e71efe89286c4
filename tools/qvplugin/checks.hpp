#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace qvtc::qvplugin {

/// Longest text: what the library reads of the program's output.
inline constexpr std::size_t text_limit = 102400;

/// The number that a word of the command line is; throws a Failure for one that is
/// not a plain decimal number of 32 bits.
std::uint32_t key_of(const std::string& word);

/// Throws a Failure for a text that is not base64, or too long.
void check_text(const std::string& text);

/// A word for a message: characters that cannot be shown, and the end of a long one, are replaced.
std::string shown(const std::string& word);

} // namespace qvtc::qvplugin
