#include "network/exports.hpp"

#include <cstring>
#include <string>

#include "core/log.hpp"
#include "core/text.hpp"
#include "network/addressing.hpp"
#include "network/default_route.hpp"
#include "network/devices.hpp"
#include "network/interface.hpp"
#include "network/name_servers.hpp"
#include "network/wifi_hardware.hpp"
#include "network/wired.hpp"
#include "network/wireless.hpp"
#include "network/wireless_addressing.hpp"
#include "network/wireless_scan.hpp"

using namespace qvtc;

namespace {

constexpr std::size_t field_size = sizeof(netconf::ip);
constexpr std::size_t object_size = 1024;

using Field = char (netconf::*)[field_size];
struct FieldRow {
    Field there;
    std::string network::NetConf::*here;
};
constexpr FieldRow fields_of_record[] = {
    {&netconf::conf, &network::NetConf::conf}, {&netconf::ip, &network::NetConf::ip},
    {&netconf::mask, &network::NetConf::mask}, {&netconf::gateway, &network::NetConf::gateway},
    {&netconf::dns1, &network::NetConf::dns1}, {&netconf::dns2, &network::NetConf::dns2},
};

template <typename Getter>
json_object* handed_over(Getter getter) {
    return guard<json_object*>(nullptr, [&] { return getter().release(); });
}

/// Runs a setter whose outcome is never told.
template <typename Setter>
int always_zero(const char* params, Setter setter) {
    if (given(params)) guard_void([&] { setter(params); });
    return 0;
}

int network_status() {
    return guard(0, [] { return network::any_running() ? 1 : 0; });
}

int set_conf(const char* device, const char* params) {
    if (!given(device, params)) return -1;
    return guard(-1, [&] { return network::set_wired_conf(device, params); });
}

} // namespace

extern "C" {

json_object* qvgetwiredconf() { return handed_over(network::main_port_conf); }

int qvsetwiredconf(const char* params) { return set_conf(network::main_port, params); }

int qvgetwiredstatus() { return network_status(); }

json_object* qvgetexwiredconf() { return handed_over(network::extra_port_conf); }

int qvsetexwiredconf(const char* params) {
    set_conf(network::extra_port, params);
    return 0;
}

json_object* qvgetwifi() {
    return handed_over([] { return json_pair("status", network::wireless_present() ? "1" : "0"); });
}

json_object* qvgetwifionoff() {
    return handed_over([] {
        return json_pair("useWifi", network::is_switched_on(network::wifi_switch()) ? "on" : "off");
    });
}

int qvsetwifionoff(const char* params) { return always_zero(params, network::switch_wifi); }

json_object* qvgetwifilist() { return handed_over(network::wifi_list); }

int qvsetwifiauth(const char* params) { return always_zero(params, network::join_network); }

json_object* qvgetwirelessconf() {
    return handed_over([] {
        return network::wireless_present() ? network::conf_object(network::wireless_conf())
                                           : nullptr;
    });
}

int qvsetwirelessconf(const char* params) {
    return always_zero(params, network::set_wireless_conf);
}

json_object* qvgetdefaultroute() { return handed_over(network::default_route); }

int qvsetdefaultroute(const char* params) {
    return always_zero(params, [](const char* text) {
        log(Level::debug, "qvsetdefaultroute=%s", text);
        network::set_default_route(text);
    });
}

json_object* getwiredconf(const char* device) {
    if (!given(device)) return nullptr;
    return handed_over([&] { return network::wired_conf(device); });
}

int setwiredconf(const char* params) { return set_conf(network::main_port, params); }

int setexwiredconf(const char* params) {
    set_conf(network::extra_port, params);
    return 0;
}

int getwiredstatus() { return network_status(); }

int getnetworkstatus() { return network_status(); }

int networkstatus(const char* device) {
    if (!given(device)) return 0;
    return guard(0, [&] { return network::is_running(device) ? 1 : 0; });
}

int getnetconf(const char* device, netconf* record) {
    if (!given(device, record)) return 0;
    guard_void([&] {
        network::NetConf conf;
        for (const FieldRow& row : fields_of_record)
            conf.*row.here =
                std::string(record->*row.there, strnlen(record->*row.there, field_size));
        network::read_net_conf(device, conf);
        for (const FieldRow& row : fields_of_record)
            copy_out(record->*row.there, field_size, conf.*row.here);
    });
    return 0;
}

int getipaddr(const char* device, char* address) {
    if (!given(device, address)) return -1;
    return guard(-1, [&] {
        const auto found = network::address_of(device);
        if (!found) return -1;
        copy_out(address, field_size, *found);
        return 0;
    });
}

int getmask(const char* device, char* mask) {
    if (!given(device, mask)) return -1;
    return guard(-1, [&] {
        std::string found;
        const network::MaskRead outcome = network::read_mask(device, found);
        if (outcome == network::MaskRead::done) copy_out(mask, field_size, found);
        return outcome == network::MaskRead::done      ? 0
               : outcome == network::MaskRead::refused ? 1
                                                       : -1;
    });
}

int getgateway(const char* device, char* gateway) {
    if (!given(device, gateway)) return -1;
    return guard(-1, [&] {
        const auto found = network::gateway_of(device);
        if (found && !found->empty()) copy_out(gateway, field_size, *found);
        return found ? 0 : -1;
    });
}

int getconf(char* conf, const char* device) {
    if (!given(device, conf)) return -1;
    return guard(-1, [&] {
        std::string mode;
        const network::ConfRead outcome = network::read_conf(device, mode);
        copy_out(conf, field_size, mode);
        return outcome == network::ConfRead::done ? 0 : -1;
    });
}

int getdns(char* first, char* second) {
    if (!given(first, second)) return -1;
    return guard(-1, [&] {
        const auto servers = network::name_servers();
        if (!servers) return -1;
        if (!servers->first.empty()) copy_out(first, field_size, servers->first);
        if (!servers->second.empty()) copy_out(second, field_size, servers->second);
        return 0;
    });
}

int setnetworkconf(const char* device, const char* params) { return set_conf(device, params); }

int savenetconf(const char* device, const char* list, int keepfile) {
    if (!given(device, list)) return -1;
    return guard(-1, [&] { return network::apply_wired_conf(device, list, keepfile == 1); });
}

int network_restart(const char* device) {
    if (!given(device)) return -1;
    return guard(-1, [&] { return network::restart_interface(device); });
}

int getnetdevname(char* name) {
    if (given(name)) copy_out_whole(name, network::main_port);
    return 0;
}

void wiredconf_init(netconf* record) {
    if (!given(record)) return;
    for (const FieldRow& row : fields_of_record)
        copy_out(record->*row.there, field_size, "0.0.0.0");
}

int resetnetwork(const char* device) {
    if (!given(device)) return -1;
    return guard(-1, [&] { return network::reset_wired(device) ? 0 : -1; });
}

int getwifi() {
    return guard(0, [] { return network::wireless_present() ? 1 : 0; });
}

int setwifionoff(const char* params) { return always_zero(params, network::switch_wifi); }

int getwifionoff(char* params) {
    if (!given(params)) return -1;
    return guard(-1, [&] {
        const std::string stored = network::wifi_switch();
        if (stored.empty()) return -1;
        copy_out_whole(params, stored);
        return 0;
    });
}

json_object* getwifilist() { return handed_over(network::wifi_list); }

int scan_tabbed_data(const char* line, char fields[][128], int max) {
    if (!given(line, fields) || max <= 0) return 0;
    return guard(0, [&] {
        const auto found = network::scan_fields(line, static_cast<std::size_t>(max));
        for (std::size_t i = 0; i < found.size(); ++i)
            copy_out(fields[i], sizeof fields[i], found[i]);
        return static_cast<int>(found.size());
    });
}

int enctype_type(char* security) {
    return static_cast<int>(network::encryption_of(given(security) ? security : ""));
}

int signal_level(int value, int levels) { return network::signal_level(value, levels); }

int resetWifi() {
    return guard(-1, [] { return network::restart_supplicant(); });
}

int setwifiauth(const char* params) { return always_zero(params, network::join_network); }

int getwirelessconf(char* object) {
    if (!given(object)) return 0;
    guard_void(
        [&] { copy_out(object, object_size, network::object_text(network::wireless_conf())); });
    return 0;
}

int setwirelessconf(const char* params) {
    if (!given(params)) return -1;
    return guard(-1, [&] { return network::set_wireless_conf(params) ? 0 : -1; });
}

int savewirelessconf(const char* list) {
    if (!given(list)) return -1;
    return guard(-1, [&] { return network::apply_wireless_conf(list); });
}

int setdefaultroute(const char* params) { return always_zero(params, network::set_default_route); }

int getdefaultroute(char* route) {
    if (!given(route)) return 0;
    guard_void([&] {
        const std::string stored = network::default_route_text();
        if (!stored.empty()) copy_out_whole(route, stored);
    });
    return 0;
}
}
