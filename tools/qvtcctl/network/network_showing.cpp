#include "qvtcctl/base/table.hpp"
#include "qvtcctl/network/network.hpp"
#include "qvtcctl/network/network_presentation.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::string wifi_text(bool present, bool on) {
    if (!present) return "no hardware, or disabled";
    return on ? "on" : "off";
}

Row row_of(Port port, const std::optional<PortState>& state) {
    const std::string name(name_of(port));
    if (!state) return {name, "absent"};
    const auto shown = [](const std::string& text) { return text.empty() ? "-" : text; };
    const std::string servers =
        state->dns2.empty() ? state->dns1 : fmt::format("{} {}", state->dns1, state->dns2);
    return {name,
            state->is_static ? "static" : "dhcp",
            shown(state->address),
            shown(state->mask),
            shown(state->gateway),
            shown(servers)};
}

Answer run_network_show(const Request& request) {
    const Network network(request.chatter());
    const bool online = network.is_online();
    const bool has_wifi = network.has_wifi();
    const bool wifi_on = network.wifi_is_on();
    std::vector<Row> rows{{"PORT", "MODE", "ADDRESS", "MASK", "GATEWAY", "NAME SERVERS"}};
    Json list = json_list();
    for (const Port port : ports) {
        const std::optional<PortState> state = network.state(port);
        rows.push_back(row_of(port, state));
        append(list, port_json(port, state));
    }
    Answer answer;
    answer.text = fmt::format("{}On a network: {}\nWi-Fi: {}\n", layout(rows),
                              online ? "yes" : "no", wifi_text(has_wifi, wifi_on));
    answer.json = json_map();
    add_flag(answer.json, "online", online);
    add(answer.json, "ports", std::move(list));
    add(answer.json, "wifi", wifi_json(has_wifi, wifi_on));
    return answer;
}

Answer run_network_scan(const Request& request) {
    const Network network(request.chatter());
    network.require_wifi();
    const std::vector<NetworkInRange> networks = network.scan();
    Answer answer;
    answer.text = scan_text(networks);
    answer.json = scan_json(networks);
    return answer;
}

} // namespace

const Verb verbs::network_show{
    .name = "show",
    .summary = "Show the ports, Wi-Fi and their addresses",
    .description = "Shows the addresses that the wired ports eth0 and eth1 and the "
                   "wireless link wlan0 use, whether the terminal is on a network, and "
                   "whether Wi-Fi is on.",
    .examples = {"qvtcctl network show", "qvtcctl network show --json"},
    .run = run_network_show,
};

const Verb verbs::network_scan{
    .name = "scan",
    .summary = "List the wireless networks in range",
    .description = "Lists the wireless networks in range with their signal and encryption, and "
                   "marks the one in use with \"*\". Hidden networks are not listed. Wi-Fi must "
                   "be switched on.",
    .examples = {"qvtcctl network scan", "qvtcctl network scan --json"},
    .run = run_network_scan,
};

} // namespace qvtc::qvtcctl
