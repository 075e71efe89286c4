#pragma once

#include <optional>
#include <string>

#include "core/base64.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

/// A stored password: none, one that decodes, or one that does not.
struct Password {
    std::optional<std::string> text; ///< absent when none is stored
    bool decodable = true;
};

/// Reads the stored form: base64, in which a parameter string could only carry
/// the padding "=" as "+".
inline Password decode_password(const std::string& stored) {
    if (stored.empty()) return {};
    const auto bytes = base64::decode(replace_all(stored, '+', '='));
    if (!bytes) return {std::nullopt, false};
    return {c_text(*bytes), true};
}

} // namespace qvtc::clients
