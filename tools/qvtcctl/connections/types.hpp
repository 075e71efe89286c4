#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {

/// One kind of connection, as the terminal numbers it.
struct ConnectionType {
    unsigned number;
    std::string_view name;    ///< what is typed: "rdp"
    std::string_view title;   ///< what is read: "RDP"
    std::string_view process; ///< how its client's process name begins; empty: never started here
    std::string_view window;  ///< text that marks its client's window in the window tree
    std::string_view log;     ///< where its client's words go; empty: nowhere
};

// clang-format off
inline constexpr std::array<ConnectionType, 9> connection_types{{
    {QVTC_TYPE_BROKER,  "broker",  "VDI broker", "",              "",            ""},
    {QVTC_TYPE_RDP,     "rdp",     "RDP",        "xfreerdp",      "xfreerdp",    "/home/root/freerdp.log"},
    {QVTC_TYPE_SPICE,   "spice",   "SPICE",      "remote-viewer", "remote-view", "/home/root/spicec.log"},
    {QVTC_TYPE_OVIRT,   "ovirt",   "oVirt",      "",              "",            ""},
    {QVTC_TYPE_CITRIX,  "citrix",  "Citrix",     "",              "",            ""},
    {QVTC_TYPE_HORIZON, "horizon", "Horizon",    "vmware-view",   "vmware-view", ""},
    {QVTC_TYPE_VNC,     "vnc",     "VNC",        "vncviewer",     "vncviewer",   "/home/root/vnc.log"},
    {QVTC_TYPE_HDP,     "hdp",     "HDP",        "",              "",            ""},
    {QVTC_TYPE_WEB,     "web",     "web",        "firefox",       "firefox",     "/home/root/firefox.log"},
}};
// clang-format on

constexpr unsigned first_id(const ConnectionType& type) { return type.number * QVTC_IDS_PER_TYPE; }
constexpr unsigned last_id(const ConnectionType& type) {
    return first_id(type) + QVTC_IDS_PER_TYPE - 1;
}
constexpr bool can_be_launched(const ConnectionType& type) { return !type.process.empty(); }

/// The type with that name (in any case) or number; null when there is none.
const ConnectionType* find_type(std::string_view name_or_number);

/// The type whose block holds the id; null for an id in no block.
const ConnectionType* type_of_id(unsigned id);

/// As find_type() and type_of_id(), but refuse with a message that says what there is.
const ConnectionType& require_type(std::string_view name_or_number);
const ConnectionType& require_type_of_id(unsigned id);

/// The id that the text names. Refuses what is no number and what lies in no type's block.
unsigned require_id(std::string_view text);

} // namespace qvtc::qvtcctl
