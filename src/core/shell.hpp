#pragma once

#include <string>
#include <string_view>

/// Values in command texts. Each helper serves one position of a value in the
/// text, and gives the value back unchanged where the shell would find nothing
/// special in it; otherwise the shell is made to hand on the value itself.
namespace qvtc::shell {

/// Whether other text of the same word stands before the value: "~" and "#" are
/// ordinary there.
enum class At { word_start, inside_word };

/// Outside quotes, where blanks separate: several words stay several words,
/// but nothing in them starts, ends or redirects a command, expands or quotes.
std::string bare(std::string_view value, At at = At::word_start);

/// Outside quotes, as one word whatever it holds.
std::string word(std::string_view value, At at = At::word_start);

/// The same right before ">" without a blank, where a number would name the
/// descriptor to redirect.
std::string before_redirection(std::string_view value);

/// Between the single quotes of the text.
std::string in_single(std::string_view value);

/// Between the double quotes of the text.
std::string in_double(std::string_view value);

/// As a basic regular expression for `grep`, outside quotes: matches the value
/// itself, and is one word and no option whatever it holds.
std::string grep_pattern(std::string_view value);

/// Behind NAME= in a file that the system's scripts read as shell (ifcfg-*,
/// network). As one line: the file's other readers and editors take it line by
/// line, and half a quoted value would set free what follows.
std::string assigned(std::string_view value);

/// Whether "echo", given the value and nothing else, takes it for an option, in
/// whatever quotes.
bool is_echo_option(std::string_view value);

} // namespace qvtc::shell
