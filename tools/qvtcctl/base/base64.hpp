#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

std::string base64_encoded(std::string_view bytes);

/// The bytes, or nothing when the text is not base64 (its length a multiple of 4, "=" only at
/// the end).
std::optional<std::string> base64_decoded(std::string_view text);

} // namespace qvtc::qvtcctl
