#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvtc {

/// printf into a string; the compiler checks the format against its arguments.
[[gnu::format(printf, 1, 2)]] std::string textf(const char* format, ...);

/// The bytes before the first NUL: what a C reader of the same bytes sees.
std::string c_text(std::string text);

/// The first `limit` bytes, less what a cut would leave of a UTF-8 character.
std::string cut(std::string text, std::size_t limit);

std::string replace_all(std::string text, char from, char to);
std::string replace_all(std::string_view text, std::string_view from, std::string_view to);
std::string remove_all(std::string text, char unwanted);

/// A value as a line of a file has it: without the white space at its end, such
/// as the newline that front-ends send behind the last value, and with a blank
/// for every line break within.
std::string one_line(std::string_view value);

/// True for "on", the one value that sets a switch.
inline bool is_on(std::string_view value) { return value == "on"; }

inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Copies text and its NUL into a caller's buffer of `size` bytes; what does
/// not fit is dropped. Nothing is written for a size of 0.
void copy_out(char* destination, std::size_t size, std::string_view text);

/// The same for a caller's buffer whose size was never given: the whole text.
/// Only for exported functions whose contract is just that.
void copy_out_whole(char* destination, std::string_view text);

/// A copy that a C caller releases with free(), at least `size` bytes long and
/// zero-filled behind the text; null when memory has run out.
char* allocate_copy(std::string_view text, std::size_t size = 0);

} // namespace qvtc
