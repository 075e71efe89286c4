#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// The blocks that matter for names of desktops and users; rarer scripts count as one column.
constexpr std::array<Range, 12> wide_ranges{{
    {0x1100, 0x115F},   // Hangul Jamo initials
    {0x2E80, 0x303E},   // CJK radicals and punctuation
    {0x3041, 0x33FF},   // Hiragana, Katakana, compatibility
    {0x3400, 0x4DBF},   // CJK extension A
    {0x4E00, 0x9FFF},   // CJK
    {0xA000, 0xA4CF},   // Yi
    {0xAC00, 0xD7A3},   // Hangul syllables
    {0xF900, 0xFAFF},   // CJK compatibility
    {0xFE30, 0xFE4F},   // CJK compatibility forms
    {0xFF00, 0xFF60},   // full-width forms
    {0x1F300, 0x1FAFF}, // pictographs
    {0x20000, 0x3FFFD}, // CJK extensions B and on
}};
constexpr std::array<Range, 5> combining_ranges{{
    {0x0300, 0x036F},
    {0x1AB0, 0x1AFF},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
    {0x200B, 0x200F},
}};
constexpr std::array<Range, 8> invisible_ranges{{
    {0x061C, 0x061C},   // Arabic letter mark
    {0x180E, 0x180E},   // Mongolian vowel separator
    {0x200B, 0x200F},   // zero-width characters, marks of direction
    {0x2028, 0x202E},   // separators of lines, embedded and overridden direction
    {0x2060, 0x206F},   // word joiner, isolated direction, deprecated format characters
    {0xFEFF, 0xFEFF},   // byte order mark
    {0xFFF9, 0xFFFB},   // interlinear annotation
    {0xE0000, 0xE007F}, // tags
}};

template <std::size_t N>
bool within(const std::array<Range, N>& ranges, char32_t code) {
    return std::any_of(ranges.begin(), ranges.end(), [code](const Range& range) {
        return range.first <= code && code <= range.last;
    });
}

std::size_t sequence_length(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

bool is_shortest_form(char32_t code, std::size_t bytes) {
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code >= smallest[bytes] && code <= 0x10FFFF && !surrogate;
}

std::size_t width_of(char32_t code) {
    if (within(combining_ranges, code)) return 0;
    return within(wide_ranges, code) ? 2 : 1;
}

/// What a tty does with the first character of a text.
struct Step {
    std::size_t bytes;
    std::size_t columns;
};
Step step_into(std::string_view text) {
    const std::optional<Utf8Character> next = first_character(text);
    return next ? Step{next->bytes, width_of(next->code)} : Step{1, 1};
}

} // namespace

std::optional<Utf8Character> first_character(std::string_view text) {
    if (text.empty()) return std::nullopt;
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = sequence_length(lead);
    if (length == 0 || length > text.size()) return std::nullopt;
    if (length == 1) return Utf8Character{lead, 1};
    auto code = static_cast<char32_t>(lead & (0x7FU >> length));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U) return std::nullopt;
        code = (code << 6U) | (next & 0x3FU);
    }
    if (!is_shortest_form(code, length)) return std::nullopt;
    return Utf8Character{code, length};
}

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::optional<Utf8Character> next = first_character(text);
        if (!next) return false;
        text.remove_prefix(next->bytes);
    }
    return true;
}

bool is_control(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

bool is_invisible(char32_t code) { return within(invisible_ranges, code); }

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::optional<Utf8Character> next = first_character(text);
        const std::size_t bytes = next ? next->bytes : 1;
        if (next && !is_control(next->code) && !is_invisible(next->code)) {
            result += text.substr(0, bytes);
        } else {
            for (const char c : text.substr(0, bytes)) {
                result += fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
            }
        }
        text.remove_prefix(bytes);
    }
    return result;
}

std::string printable_lines(std::string_view text) {
    std::string result;
    for (const std::string_view line : split_lines(text)) result += printable(line) + "\n";
    if (!text.ends_with('\n') && !result.empty()) result.pop_back();
    return result;
}

std::size_t display_width(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Step next = step_into(text);
        width += next.columns;
        text.remove_prefix(next.bytes);
    }
    return width;
}

std::string_view first_columns(std::string_view text, std::size_t columns) {
    std::size_t taken = 0;
    while (taken < text.size()) {
        const Step next = step_into(text.substr(taken));
        if (next.columns > columns) break;
        columns -= next.columns;
        taken += next.bytes;
    }
    return text.substr(0, taken);
}

std::vector<std::string_view> split_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

bool is_blank(std::string_view text) { return trimmed(text).empty(); }

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view white = " \t\r\n\v\f";
    const std::size_t begin = text.find_first_not_of(white);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(white) - begin + 1);
}

std::optional<unsigned> parse_number(std::string_view text) {
    constexpr std::size_t most_digits = 9;
    if (text.empty() || text.size() > most_digits) return std::nullopt;
    unsigned number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        number = number * 10 + static_cast<unsigned>(c - '0');
    }
    return number;
}

} // namespace qvtc::qvtcctl
