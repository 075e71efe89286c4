#pragma once

#include "qvtcctl/connections/fields.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// How long a password may be so that its stored form fits the field.
std::size_t longest_password(const ConnectionType& type);

/// The text that is stored for a password. VNC's is the password itself. For every other type it
/// is base64 that a parameter string can carry and that the library still decodes: "=" is
/// written "+", and the alphabet's own "+" is therefore written "-".
std::string stored_password(const ConnectionType& type, std::string_view password);

/// The password behind a stored text, or nothing when the text is no such form.
std::optional<std::string> readable_password(const ConnectionType& type, std::string_view stored);

} // namespace qvtc::qvtcctl
