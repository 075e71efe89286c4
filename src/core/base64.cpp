#include "core/base64.hpp"

#include <algorithm>

namespace qvtc::base64 {

namespace {

std::uint32_t byte_at(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
}

} // namespace

std::string encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::uint32_t group =
            byte_at(bytes, at) << 16 | byte_at(bytes, at + 1) << 8 | byte_at(bytes, at + 2);
        for (int shift = 18; shift >= 0; shift -= 6) text += alphabet[group >> shift & 63U];
    }
    std::fill(text.end() - padding[bytes.size() % 3], text.end(), '=');
    return text;
}

std::optional<std::string> decode(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    if (text.size() % 4 != 0) return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t at = 0; at < text.size(); at += 4) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            group = group << 6 | decoding_table[static_cast<unsigned char>(text[at + i])];
        }
        for (int shift = 16; shift >= 0; shift -= 8)
            bytes += static_cast<char>(group >> shift & 255U);
    }
    for (std::size_t back = 0; back < 2 && back < text.size(); ++back) {
        if (text[text.size() - 1 - back] == '=') bytes.pop_back();
    }
    return bytes;
}

} // namespace qvtc::base64
