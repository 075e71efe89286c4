#pragma once

#include <string>

#include "core/json.hpp"

/// The wireless link: its switch, the networks in range, joining one.
namespace qvtc::network {

/// What is stored of the Wi-Fi switch; empty when nothing is.
std::string wifi_switch();
bool is_switched_on(const std::string& wifi_switch);

/// Stores the switch as it stands and brings the link up for a text with "on",
/// else down.
void switch_wifi(const std::string& params);

/// Starts `wpa_supplicant` and `dhclient` anew; the status of the last command.
int restart_supplicant();

/// The networks in range: {"list": [...]}, empty when Wi-Fi is switched off.
Json wifi_list();

/// Begins to join the network in a parameter string, in the background. Nothing
/// is touched, and the log says so, when the string names no network.
void join_network(const std::string& params);

/// Removes NetworkManager's wireless profiles.
void forget_wireless_profiles();

/// The network name in hexadecimal text, at most 127 bytes and up to the first
/// zero byte.
std::string network_name(std::string_view hexadecimal);

} // namespace qvtc::network
