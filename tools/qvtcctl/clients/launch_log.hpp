#pragma once

#include "qvtcctl/connections/types.hpp"

#include <cstddef>
#include <optional>
#include <string_view>

namespace qvtc::qvtcctl {

// What the library's log says of launches.

/// The connection of this type that the log says was launched last, by whomever; nothing when it
/// names none, as when it has been begun anew since.
std::optional<unsigned> last_launched(const ConnectionType& type, std::string_view log);
std::optional<unsigned> last_launched(const ConnectionType& type);

/// How often a connection of the other type has been launched since the last one of this type.
std::size_t launches_since(const ConnectionType& type, const ConnectionType& other,
                           std::string_view log);
std::size_t launches_since(const ConnectionType& type, const ConnectionType& other);

} // namespace qvtc::qvtcctl
