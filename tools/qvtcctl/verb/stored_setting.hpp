#pragma once

#include "qvtcctl/verb/quiet.hpp"

#include <string>

namespace qvtc::qvtcctl {

/// The keys of the terminal's own settings whose values no function of the library tells as they
/// are stored: its getters put a default in the place of what nobody has set.
namespace setting_key {
inline constexpr const char* applied_resolution = "tc_config_param_6_1";
inline constexpr const char* date_and_time = "tc_config_param_9";
inline constexpr const char* device_identity = "tc_config_param_11";
inline constexpr const char* host_name = "tc_config_param_12";
inline constexpr const char* playback_volume = "tc_config_param_14_0";
inline constexpr const char* capture_volume = "tc_config_param_14_1";
inline constexpr const char* default_route = "tc_config_param_16";
inline constexpr const char* main_port = "networkconf-eth0";
inline constexpr const char* extra_port = "networkconf-eth1";
} // namespace setting_key

/// Empty when nobody has set it.
std::string stored_setting(const char* key, Chatter chatter);

/// False when it could not be stored. Does nothing but store.
bool store_setting(const char* key, std::string value, Chatter chatter);

} // namespace qvtc::qvtcctl
