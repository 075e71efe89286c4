#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// Two lower-case digits a byte.
std::string hexadecimal_of(std::string_view text);

/// The text behind hexadecimal digits, or nothing when they are none or odd in number.
std::optional<std::string> text_of_hexadecimal(std::string_view digits);

} // namespace qvtc::qvtcctl
