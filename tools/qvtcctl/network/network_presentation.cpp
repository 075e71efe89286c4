#include "qvtcctl/network/network_presentation.hpp"

#include "qvtcctl/base/table.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {

Json port_json(Port port, const std::optional<PortState>& state) {
    Json map = json_map();
    add(map, "port", name_of(port));
    add_flag(map, "present", state.has_value());
    if (!state) return map;
    add(map, "mode", state->is_static ? "static" : "dhcp");
    add(map, "address", state->address);
    add(map, "mask", state->mask);
    add(map, "gateway", state->gateway);
    add(map, "dns1", state->dns1);
    add(map, "dns2", state->dns2);
    return map;
}

Json wifi_json(bool present, bool on) {
    Json map = json_map();
    add_flag(map, "present", present);
    add_flag(map, "on", on);
    return map;
}

std::string note_on_manager(Port port) {
    return fmt::format("NetworkManager manages {0} and may replace these addresses at any time. "
                       "Let it leave {0} alone: add \"[keyfile]\" and \"unmanaged-devices="
                       "interface-name:{0}\" to a file in /etc/NetworkManager/conf.d, and restart "
                       "NetworkManager.",
                       name_of(port));
}

std::string signal_bars(unsigned signal) {
    return std::string(signal, '#') + std::string(strongest_signal - signal, '-');
}

std::string scan_text(const std::vector<NetworkInRange>& networks) {
    if (networks.empty()) return "No networks are in range.\n";
    std::vector<Row> rows{{"", "NAME", "SIGNAL", "ENCRYPTION"}};
    for (const NetworkInRange& network : networks) {
        rows.push_back({network.in_use ? "*" : "", network.name, signal_bars(network.signal),
                        network.encryption});
    }
    return layout(rows);
}

Json scan_json(const std::vector<NetworkInRange>& networks) {
    Json list = json_list();
    for (const NetworkInRange& network : networks) {
        Json map = json_map();
        add(map, "name", network.name);
        add_flag(map, "inUse", network.in_use);
        add_number(map, "signal", network.signal);
        add(map, "encryption", network.encryption);
        append(list, std::move(map));
    }
    Json map = json_map();
    add(map, "networks", std::move(list));
    return map;
}

std::string port_sentence(Port port, const PortState& state) {
    std::string text = fmt::format("{} has ", name_of(port));
    if (state.address.empty()) {
        text += "no address";
    } else {
        text += fmt::format("the address {}, mask {}", state.address, state.mask);
    }
    if (!state.gateway.empty()) text += fmt::format(", gateway {}", state.gateway);
    if (!state.dns2.empty()) {
        text += fmt::format(", name servers {} and {}", state.dns1, state.dns2);
    } else if (!state.dns1.empty()) {
        text += fmt::format(", name server {}", state.dns1);
    }
    return text + ".\n";
}

} // namespace qvtc::qvtcctl
