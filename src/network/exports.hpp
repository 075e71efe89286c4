#pragma once

#include <json-c/json.h>

#include "core/edge.hpp"

/// The exported names of this folder. Texts that are handed over have at most
/// 63 bytes and a NUL unless said otherwise; a text that cannot be had leaves
/// its buffer as it was.
extern "C" {

/// The IPv4 configuration of an interface, each field with its NUL.
struct netconf {
    char conf[64]; ///< "1" static, "0" DHCP
    char ip[64];
    char gateway[64];
    char mask[64];
    char dns1[64];
    char dns2[64];
};

// --- What the front-end calls; the public header says what each does --------------------------

QVTC_EXPORT json_object* qvgetwiredconf();
QVTC_EXPORT int qvsetwiredconf(const char* params);
QVTC_EXPORT int qvgetwiredstatus();
QVTC_EXPORT json_object* qvgetexwiredconf();
QVTC_EXPORT int qvsetexwiredconf(const char* params);
QVTC_EXPORT json_object* qvgetwifi();
QVTC_EXPORT json_object* qvgetwifionoff();
QVTC_EXPORT int qvsetwifionoff(const char* params);
QVTC_EXPORT json_object* qvgetwifilist();
QVTC_EXPORT int qvsetwifiauth(const char* params);
QVTC_EXPORT json_object* qvgetwirelessconf();
QVTC_EXPORT int qvsetwirelessconf(const char* params);
QVTC_EXPORT json_object* qvgetdefaultroute();
QVTC_EXPORT int qvsetdefaultroute(const char* params);

// --- Wired ------------------------------------------------------------------------------------

QVTC_EXPORT json_object* getwiredconf(const char* device);
/// -1 without "conf" or for fewer than four characters; else the status of ifup.
QVTC_EXPORT int setwiredconf(const char* params);
/// Always 0.
QVTC_EXPORT int setexwiredconf(const char* params);
/// 1 when any interface runs, else 0.
QVTC_EXPORT int getwiredstatus();
QVTC_EXPORT int getnetworkstatus();
/// 1 when this interface is up and running, else 0.
QVTC_EXPORT int networkstatus(const char* device);
/// Always 0: a field that cannot be read keeps what it holds.
QVTC_EXPORT int getnetconf(const char* device, netconf* record);
/// 0 or -1.
QVTC_EXPORT int getipaddr(const char* device, char* address);
/// 0, 1 when the kernel refuses, or -1.
QVTC_EXPORT int getmask(const char* device, char* mask);
/// 0, or -1 when the terminal is on no network.
QVTC_EXPORT int getgateway(const char* device, char* gateway);
/// "0" or "1"; -1, and "0", when no command can be started.
QVTC_EXPORT int getconf(char* conf, const char* device);
/// 0, or -1 when /etc/resolv.conf cannot be read.
QVTC_EXPORT int getdns(char* first, char* second);
QVTC_EXPORT int setnetworkconf(const char* device, const char* params);
/// "list" holds conf;ip;mask;gateway;dns1;dns2, and may be null.
QVTC_EXPORT int savenetconf(const char* device, const char* list, int keepfile);
QVTC_EXPORT int network_restart(const char* device);
/// "eth0". Always 0.
QVTC_EXPORT int getnetdevname(char* name);
/// "0.0.0.0" in all six fields.
QVTC_EXPORT void wiredconf_init(netconf* record);
/// 0, or -1 when the file could not be written.
QVTC_EXPORT int resetnetwork(const char* device);

// --- Wireless ---------------------------------------------------------------------------------

/// 1 when there is Wi-Fi hardware that is not disabled, else 0.
QVTC_EXPORT int getwifi();
/// Always 0.
QVTC_EXPORT int setwifionoff(const char* params);
/// The whole stored text. 0, or -1 when nothing is stored.
QVTC_EXPORT int getwifionoff(char* params);
QVTC_EXPORT json_object* getwifilist();
/// What awk makes of a line: at most `max` fields, each of at most 127 bytes.
/// Returns their number.
QVTC_EXPORT int scan_tabbed_data(const char* line, char fields[][128], int max);
/// 0 open, 1 WPA, 2 WPA2, 3 802.1X, 4 anything else.
QVTC_EXPORT int enctype_type(char* security);
QVTC_EXPORT int signal_level(int value, int levels);
QVTC_EXPORT int resetWifi();
/// Always 0.
QVTC_EXPORT int setwifiauth(const char* params);
/// The object as text in single quotes, at most 1,023 bytes. Always 0.
QVTC_EXPORT int getwirelessconf(char* object);
/// 0 or -1.
QVTC_EXPORT int setwirelessconf(const char* params);
/// "list" holds conf;ip;mask;gateway;dns1;dns2;ssid, and may be null.
QVTC_EXPORT int savewirelessconf(const char* list);

// --- Default route ----------------------------------------------------------------------------

/// Always 0.
QVTC_EXPORT int setdefaultroute(const char* params);
/// At most 1,023 bytes of what is stored. Always 0.
QVTC_EXPORT int getdefaultroute(char* route);
}
