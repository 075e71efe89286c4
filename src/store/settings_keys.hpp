#pragma once

/// The keys of the settings document under the item of device settings.
namespace qvtc::store::keys {

inline constexpr const char* device_item = "configItem";

inline constexpr const char* connect_delay = "tc_config_param_1";
inline constexpr const char* language = "tc_config_param_8";
inline constexpr const char* horizon_menu_bar = "tc_config_param_13";
inline constexpr const char* start_marker = "com.valmora.thinclient.para_10_0";

} // namespace qvtc::store::keys
