#include "qvtcctl/base/hexadecimal.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::optional<unsigned> value_of(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
    return std::nullopt;
}

} // namespace

std::string hexadecimal_of(std::string_view text) {
    std::string digits;
    for (const char c : text) digits += fmt::format("{:02x}", static_cast<unsigned char>(c));
    return digits;
}

std::optional<std::string> text_of_hexadecimal(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const std::optional<unsigned> high = value_of(digits[i]);
        const std::optional<unsigned> low = value_of(digits[i + 1]);
        if (!high || !low) return std::nullopt;
        text += static_cast<char>(*high * 16 + *low);
    }
    return text;
}

} // namespace qvtc::qvtcctl
