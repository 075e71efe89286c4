#include "qvtcctl/base/base64.hpp"

#include <cstdint>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t group_bytes = 3;
constexpr std::size_t group_characters = 4;
constexpr unsigned bits_per_character = 6;
constexpr unsigned character_mask = (1U << bits_per_character) - 1;

std::size_t padding_of(std::string_view text) {
    if (text.ends_with("==")) return 2;
    return text.ends_with('=') ? 1 : 0;
}

} // namespace

std::string base64_encoded(std::string_view bytes) {
    std::string text;
    for (std::size_t start = 0; start < bytes.size(); start += group_bytes) {
        const std::string_view group = bytes.substr(start, group_bytes);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < group_bytes; ++i) {
            bits = (bits << 8U) | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        for (std::size_t i = 0; i < group_characters; ++i) {
            const auto shift = static_cast<unsigned>(group_bytes - i) * bits_per_character;
            text += i <= group.size() ? alphabet[(bits >> shift) & character_mask] : '=';
        }
    }
    return text;
}

std::optional<std::string> base64_decoded(std::string_view text) {
    if (text.size() % group_characters != 0) return std::nullopt;
    const std::size_t padding = padding_of(text);
    const std::size_t length = text.size() / group_characters * group_bytes - padding;
    text.remove_suffix(padding);
    std::string bytes;
    std::uint32_t bits = 0;
    unsigned held = 0;
    for (const char c : text) {
        const std::size_t value = alphabet.find(c);
        if (value == std::string_view::npos) return std::nullopt;
        bits = (bits << bits_per_character) | static_cast<std::uint32_t>(value);
        held += bits_per_character;
        if (held < 8) continue;
        held -= 8;
        bytes += static_cast<char>((bits >> held) & 0xFFU);
    }
    return bytes.size() == length ? std::optional(bytes) : std::nullopt;
}

} // namespace qvtc::qvtcctl
