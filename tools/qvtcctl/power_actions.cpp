#include "qvtcctl/child.hpp"
#include "qvtcctl/confirmation.hpp"
#include "qvtcctl/console.hpp"
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
        require_terminal();
        require_consent(*yes, "This drops the static gateway, asks for every address anew and "
                              "restarts the network: sessions may end.");
        Progress progress(!context.json);
        run_in_child([] { return qvdiagnsys(); }, context.chatter(),
                     [&](long seconds) { progress.show("Waiting for addresses", seconds); });
        progress.clear();
        Answer answer;
        answer.text = "The network was set up anew.\n";
        answer.json = json_map();
        add(answer.json, "done", "network-repair");
        return answer;
    };
}

} // namespace qvtc::qvtcctl
