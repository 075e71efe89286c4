#pragma once

/// Where the library's own files lie on a terminal.
namespace qvtc::paths {

inline constexpr const char* system_log = "/home/root/system.log";
inline constexpr const char* service_log = "/home/root/qvservice.log";
inline constexpr const char* rdp_log = "/home/root/freerdp.log";
inline constexpr const char* spice_log = "/home/root/spicec.log";
inline constexpr const char* vnc_log = "/home/root/vnc.log";
inline constexpr const char* web_log = "/home/root/firefox.log";

inline constexpr const char* settings_document = "/home/root/vpclientData.xml";
// Not beside the document: whoever may open that directory could hold its lock for ever.
inline constexpr const char* settings_lock = "/run/qvtcapi.lock";

// Whoever asks for a client's status reads its log by way of one file, /tmp/tmp.log.
inline constexpr const char* log_tail_lock = "/run/qvtcapi-log-tail.lock";

inline constexpr const char* client_status = "/usr/local/vpclient/config/clientstatus";

inline constexpr const char* resolution = "/var/lib/ralo/res";
inline constexpr const char* xorg_conf = "/etc/X11/xorg.conf";
inline constexpr const char* resolv_conf = "/etc/resolv.conf";
inline constexpr const char* network_scripts = "/etc/sysconfig/network-scripts";
inline constexpr const char* network_conf = "/etc/sysconfig/network";
inline constexpr const char* wpa_supplicant_conf = "/etc/wpa_supplicant.conf";
inline constexpr const char* battery_charge = "/sys/class/power_supply/BAT0/capacity";
inline constexpr const char* asound_conf_draft = "/etc/asound.conf.bak";

// Marker files: their mere presence is the setting.
inline constexpr const char* usb_denied = "/home/root/usbdenied";
inline constexpr const char* custom_remote_viewer = "/home/root/remote-viewer";
inline constexpr const char* n5095_notebook = "/home/root/n5095_notebook";
inline constexpr const char* j4105_notebook = "/home/root/j4105_notebook";
inline constexpr const char* screens_cloned = "/etc/X11/clone";
inline constexpr const char* screens_reversed = "/etc/X11/reverse";
inline constexpr const char* split_hdmi = "/home/root/hdmi";
inline constexpr const char* split_vga = "/home/root/vga";
inline constexpr const char* hdmi_audio = "/home/root/enable_hdmi_audio";
inline constexpr const char* wifi_disabled = "/home/root/disablewifi";
inline constexpr const char* vga_left_of_hdmi = "/etc/X11/vga_left_of_hdmi";

} // namespace qvtc::paths
