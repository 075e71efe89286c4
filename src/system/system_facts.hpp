#pragma once

#include <array>
#include <cstddef>

namespace qvtc::system {

/// The facts that the device-information screen shows, in its order.
enum class Fact : std::size_t {
    host_name,
    product_name,
    product_key,
    storage,
    memory,
    processor,
    wired_address,
    wireless_address,
    update_date,
    logo_date,
    system_version,
    rdp_version,
    spice_version,
    velopane_version,
    vmware_view_version,
    citrix_version,
    hdp_version,
    hardware_version,
    device_type,
};

struct FactRow {
    const char* member;
    const char* unless_known;
};

// clang-format off
inline constexpr std::array<FactRow, 19> fact_table{{
    {"hostname",              ""},
    {"productName",           "ThinClient"},
    {"productKey",            "RX10"},
    {"hardCap",               ""},
    {"memCap",                "1024MB"},
    {"cpuInfo",               ""},
    {"wiredMac",              "N/A"},
    {"wirelessMac",           "N/A"},
    {"updateDate",            "20170801175612"},
    {"logoDate",              "20170801175612"},
    {"osInfo",                "2.0"},
    {"rdpVersion",            "10.0"},
    {"spiceVersion",          "0.12.14"},
    {"velopaneVersion",       "2.0.0"},
    {"vmwareViewVersion",     "2111.1"},
    {"citrixReceiverVersion", "21.4.0.11"},
    {"hdpVersion",            "1.8.10007"},
    {"hardwareVersion",       "2.0.0"},
    {"deviceType",            "x86"},
}};
// clang-format on

/// Bytes of a fact, with its NUL.
inline constexpr std::size_t fact_size = 64;

} // namespace qvtc::system
