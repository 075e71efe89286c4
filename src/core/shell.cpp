#include "core/shell.hpp"

#include "core/text.hpp"

namespace qvtc::shell {

namespace {

constexpr std::string_view special_anywhere = "\\|&;<>()$`\"'*?[{";
constexpr std::string_view special_at_word_start = "~#";
constexpr std::string_view blanks = " \t";

std::string quoted(std::string_view value, bool keep_blanks, At at) {
    std::string text;
    bool at_word_start = at == At::word_start;
    for (const char c : value) {
        const bool blank = blanks.find(c) != std::string_view::npos;
        if (c == '\n') {
            text += "'\n'"; // a backslash before a newline would join the lines
        } else {
            const bool special =
                special_anywhere.find(c) != std::string_view::npos ||
                (at_word_start && special_at_word_start.find(c) != std::string_view::npos) ||
                (blank && !keep_blanks);
            if (special) text += '\\';
            text += c;
        }
        at_word_start = blank;
    }
    return text;
}

} // namespace

std::string bare(std::string_view value, At at) { return quoted(value, true, at); }

std::string word(std::string_view value, At at) { return quoted(value, false, at); }

std::string before_redirection(std::string_view value) {
    const bool number =
        !value.empty() && value.find_first_not_of("0123456789") == std::string_view::npos;
    return (number ? "\\" : "") + word(value);
}

std::string in_single(std::string_view value) {
    std::string text;
    for (const char c : value) {
        if (c == '\'') {
            text += "'\\''";
        } else {
            text += c;
        }
    }
    return text;
}

std::string in_double(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool last = i + 1 == value.size();
        if (c == '"' || c == '$' || c == '`' ||
            (c == '\\' && (last || contains("\"$`\\\n", value.substr(i + 1, 1)))))
            text += '\\';
        text += c;
    }
    return text;
}

std::string grep_pattern(std::string_view value) {
    constexpr std::string_view special_in_pattern = "\\.[*^$";
    std::string pattern;
    for (const char c : value) {
        if (c == '\n') {
            pattern += '.'; // it would begin another pattern
        } else if (c == '-' && pattern.empty()) {
            pattern += "[-]"; // or it would be an option
        } else {
            if (special_in_pattern.find(c) != std::string_view::npos) pattern += '\\';
            pattern += c;
        }
    }
    return word(pattern);
}

std::string assigned(std::string_view value) {
    constexpr std::string_view needs_quotes = " \t\\|&;<>()$`\"'";
    std::string line = one_line(value);
    const bool home_directory = line.starts_with('~') || contains(line, ":~");
    if (!home_directory && line.find_first_of(needs_quotes) == std::string::npos) return line;
    return "'" + in_single(line) + "'";
}

bool is_echo_option(std::string_view value) {
    return value.size() > 1 && value.starts_with('-') &&
           value.find_first_not_of("neE", 1) == std::string_view::npos;
}

} // namespace qvtc::shell
