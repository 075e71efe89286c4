#pragma once

#include <cstddef>
#include <string>

namespace qvtc::system {

/// Bytes of a host name, with its NUL, in a caller's buffer.
inline constexpr std::size_t host_name_size = 128;

/// The name of a terminal that was neither given one nor an identity.
inline constexpr const char* nameless_host = "ThinClient";

/// The host name: the one that was chosen, else the one made of the device
/// identity, else the placeholder. Shorter than host_name_size.
std::string host_name();

/// Chooses the host name for the next start of the terminal; the running
/// system keeps its own. An empty name changes nothing.
void set_host_name(const std::string& name);

} // namespace qvtc::system
