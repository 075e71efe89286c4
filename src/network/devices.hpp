#pragma once

/// The terminal's network interfaces.
namespace qvtc::network {

inline constexpr const char* main_port = "eth0";
inline constexpr const char* extra_port = "eth1";
inline constexpr const char* wireless_link = "wlan0";

} // namespace qvtc::network
