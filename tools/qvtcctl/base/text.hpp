#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// One step through UTF-8 text: the character and how many bytes it takes. A byte that begins no
/// whole, shortest-form character gives nothing.
struct Utf8Character {
    char32_t code;
    std::size_t bytes;
};
std::optional<Utf8Character> first_character(std::string_view text);

bool is_utf8(std::string_view text);

/// Control characters, DEL and those from U+0080 to U+009F.
bool is_control(char32_t code);

/// Characters that show nothing themselves and change how the text around them is read: marks of
/// writing direction, zero-width characters, separators of lines, tags.
bool is_invisible(char32_t code);

/// The text made fit for a screen: control and invisible characters, and bytes that are not UTF-8,
/// become "\xNN".
std::string printable(std::string_view text);

/// The same for a text of several lines, whose newlines stay.
std::string printable_lines(std::string_view text);

/// Columns that a tty gives the text: 2 for a wide (East Asian) character, 0 for a
/// combining one.
std::size_t display_width(std::string_view text);

/// As much of the text as a tty shows in so many columns.
std::string_view first_columns(std::string_view text, std::size_t columns);

std::vector<std::string_view> split_lines(std::string_view text);

bool is_blank(std::string_view text);

std::string_view trimmed(std::string_view text);

/// A whole non-negative decimal number of at most nine digits; std::nullopt for anything else.
std::optional<unsigned> parse_number(std::string_view text);

} // namespace qvtc::qvtcctl
