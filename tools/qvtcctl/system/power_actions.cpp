#include "qvtcctl/base/confirmation.hpp"
#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/network/network.hpp"
#include "qvtcctl/network/network_presentation.hpp"
#include "qvtcctl/verb/child.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <memory>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// Asks, acts, and says what it did.
Answer ask_and_act(const Request& request, const char* consequence, int (*act)(), const char* done,
                   const char* name) {
    require_terminal();
    require_consent(request.has(yes_flag), consequence);
    {
        const Quiet quiet(request.chatter());
        act();
    }
    Answer answer;
    answer.text = fmt::format("{}\n", done);
    answer.json = json_map();
    add(answer.json, "done", name);
    return answer;
}

void require_dhclient() {
    if (is_installed("dhclient")) return;
    throw Refusal(ExitCode::not_possible,
                  "the program dhclient, which requests the addresses, is not installed. Nothing "
                  "was changed.");
}

/// What the ports have now. Refuses when that is nothing: then nothing was repaired.
Answer repaired(const Network& network) {
    Answer answer;
    Json list = json_list();
    for (const Port port : ports) {
        const std::optional<PortState> state = network.state(port);
        if (!state || state->address.empty()) continue;
        answer.text += port_sentence(port, *state);
        append(list, port_json(port, state));
    }
    if (answer.text.empty()) {
        throw Refusal(ExitCode::not_done,
                      "addresses were requested for all ports, but no port has one now. Check "
                      "the cables and \"qvtcctl network show\".");
    }
    answer.json = json_map();
    add(answer.json, "done", "network-repair");
    add(answer.json, "ports", std::move(list));
    return answer;
}

Answer run_power_reboot(const Request& request) {
    return ask_and_act(request, "This restarts the terminal and ends every session on it.",
                       qvreboot, "The terminal restarts.", "reboot");
}

Answer run_power_shutdown(const Request& request) {
    return ask_and_act(request, "This switches the terminal off and ends every session on it.",
                       qvshutdown, "The terminal switches itself off.", "shutdown");
}

Answer run_power_network_repair(const Request& request) {
    const Network network(request.chatter());
    require_dhclient();
    require_consent(request.has(yes_flag),
                    "This removes the static gateway, requests new addresses for all "
                    "ports and restarts the network: sessions may end.");
    Progress progress(!request.json);
    run_in_child([] { return qvdiagnsys(); }, request.chatter(),
                 [&](long seconds) { progress.show("Waiting for addresses", seconds); });
    progress.clear();
    return repaired(network);
}

} // namespace

const Verb verbs::power_reboot{
    .name = "reboot",
    .summary = "Restart the terminal",
    .description = "Restarts the terminal, after asking you.",
    .examples = {"qvtcctl power reboot", "qvtcctl power reboot --yes"},
    .arguments = {yes_flag},
    .settings = Settings::not_needed,
    .run = run_power_reboot,
};

const Verb verbs::power_shutdown{
    .name = "shutdown",
    .summary = "Switch the terminal off",
    .description = "Switches the terminal off, after asking you.",
    .examples = {"qvtcctl power shutdown", "qvtcctl power shutdown --yes"},
    .arguments = {yes_flag},
    .settings = Settings::not_needed,
    .run = run_power_shutdown,
};

const Verb verbs::power_network_repair{
    .name = "network-repair",
    .summary = "Request new addresses and restart the network",
    .description = "Writes a plain configuration of the wireless network, removes the static "
                   "gateway, requests addresses for all ports by DHCP and restarts the network. "
                   "It asks you first, and shows the addresses that the ports have afterwards.",
    .examples = {"qvtcctl power network-repair"},
    .arguments = {yes_flag},
    .settings = Settings::not_needed,
    .run = run_power_network_repair,
};

} // namespace qvtc::qvtcctl
