#include "qvtcctl/child.hpp"
#include "qvtcctl/confirmation.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/installed.hpp"
#include "qvtcctl/network_device.hpp"
#include "qvtcctl/network_presentation.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/terminal_verbs.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// A verb that asks, acts, and says what it did.
Run define_action(CLI::App& app, const char* consequence, int (*act)(), const char* done,
                  const char* name) {
    auto yes = std::make_shared<bool>(false);
    app.add_flag("--yes", *yes, "do not ask");
    return [=](const Context& context) {
        require_terminal();
        require_consent(*yes, consequence);
        {
            const Quiet quiet(context.chatter());
            act();
        }
        Answer answer;
        answer.text = fmt::format("{}\n", done);
        answer.json = json_map();
        add(answer.json, "done", name);
        return answer;
    };
}

void require_dhclient() {
    if (is_installed("dhclient")) return;
    throw Refusal(ExitCode::not_possible,
                  "the program dhclient, which requests the addresses, is not installed. Nothing "
                  "was changed.");
}

/// What the ports have now. Refuses when that is nothing: then nothing was repaired.
Answer repaired(const NetworkDevice& device) {
    Answer answer;
    Json list = json_list();
    for (const Port port : ports) {
        const std::optional<PortState> state = device.state(port);
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

} // namespace

Run define_reboot(CLI::App& app) {
    return define_action(app, "This restarts the terminal and ends every session on it.", qvreboot,
                         "The terminal restarts.", "reboot");
}

Run define_shutdown(CLI::App& app) {
    return define_action(app, "This switches the terminal off and ends every session on it.",
                         qvshutdown, "The terminal switches itself off.", "shutdown");
}

Run define_network_repair(CLI::App& app) {
    auto yes = std::make_shared<bool>(false);
    app.add_flag("--yes", *yes, "do not ask");
    return [yes](const Context& context) {
        const NetworkDevice device(context.chatter());
        require_dhclient();
        require_consent(*yes, "This removes the static gateway, requests new addresses for all "
                              "ports and restarts the network: sessions may end.");
        Progress progress(!context.json);
        run_in_child([] { return qvdiagnsys(); }, context.chatter(),
                     [&](long seconds) { progress.show("Waiting for addresses", seconds); });
        progress.clear();
        return repaired(device);
    };
}

} // namespace qvtc::qvtcctl
