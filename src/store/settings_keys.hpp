#pragma once

/// The keys of the settings document under the item of device settings.
namespace qvtc::store::keys {

inline constexpr const char* device_item = "configItem";

inline constexpr const char* connect_delay = "tc_config_param_1";
inline constexpr const char* demo_mode = "tc_config_param_2";
inline constexpr const char* user_portal = "tc_config_param_3";
inline constexpr const char* applied_resolution = "tc_config_param_6_1";
inline constexpr const char* requested_resolution = "tc_config_param_6_2";
inline constexpr const char* resolution_change_waits = "tc_config_param_7";
inline constexpr const char* language = "tc_config_param_8";
inline constexpr const char* date_and_time = "tc_config_param_9";
inline constexpr const char* manager_password = "tc_config_param_10";
inline constexpr const char* device_identity = "tc_config_param_11";
inline constexpr const char* host_name = "tc_config_param_12";
inline constexpr const char* horizon_menu_bar = "tc_config_param_13";
inline constexpr const char* playback_volume = "tc_config_param_14_0";
inline constexpr const char* capture_volume = "tc_config_param_14_1";
inline constexpr const char* wifi_switch = "tc_config_param_15";
inline constexpr const char* default_route = "tc_config_param_16";
inline constexpr const char* brightness = "tc_config_param_17";
inline constexpr const char* remote_view = "tc_config_param_18";
inline constexpr const char* start_marker = "com.valmora.thinclient.para_10_0";
inline constexpr const char* boot_picture = "com.valmora.thinclient.para_23";
inline constexpr const char* monitor_power_saving = "com.valmora.thinclient.para_77";

} // namespace qvtc::store::keys
