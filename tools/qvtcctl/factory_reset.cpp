#include "qvtcctl/child.hpp"
#include "qvtcctl/confirmation.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/json.hpp"
#include "qvtcctl/table.hpp"
#include "qvtcctl/time_verbs.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <qvtcapi/factory_defaults.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// The connections that a reset forgets: it does not touch VNC's.
bool goes(const ConnectionType& type) { return type.number != QVTC_TYPE_VNC; }

std::size_t count_of(const Device& device, bool going) {
    std::size_t count = 0;
    for (const ConnectionType& type : connection_types) {
        if (goes(type) == going) count += device.records(type).size();
    }
    return count;
}

/// "&" as it is read back from the stored form.
std::string shown_default(std::string value) {
    for (char& c : value) {
        if (c == '%') c = '&';
    }
    return value;
}

std::string defaults_text() {
    std::vector<Row> rows{{"SETTING", "FACTORY VALUE"}};
    for (const qvtc_factory_default& each : qvtc_factory_defaults)
        rows.push_back({each.meaning, shown_default(each.value)});
    return layout(rows);
}

/// What a reset does to this terminal.
std::string plan_text(const Device& device) {
    return fmt::format(
        "A factory reset of this terminal\n"
        "  - forgets {} stored connections (the {} VNC connections stay);\n"
        "  - removes the manager password and the wireless networks, deletes logs;\n"
        "  - lets both wired ports ask DHCP, shows the same on all screens, sets the sound up;\n"
        "  - keeps the stored wired addressing, the default route, date and time;\n"
        "  - restarts the terminal;\n"
        "  - writes these settings:\n\n{}\n",
        count_of(device, true), count_of(device, false), defaults_text());
}

Json plan_json(const Device& device) {
    Json plan = json_map();
    add_number(plan, "connectionsForgotten", static_cast<long>(count_of(device, true)));
    add_number(plan, "connectionsKept", static_cast<long>(count_of(device, false)));
    Json settings = json_map();
    for (const qvtc_factory_default& each : qvtc_factory_defaults)
        add(settings, each.key, shown_default(each.value));
    add(plan, "settings", std::move(settings));
    return plan;
}

} // namespace

Run define_factory_reset(CLI::App& app) {
    struct Options {
        bool yes = false;
        bool plan = false;
    };
    auto options = std::make_shared<Options>();
    app.add_flag("--yes", options->yes, "do not ask");
    app.add_flag("--plan", options->plan, "only show what would be done");
    return [options](const Context& context) {
        const Device device(context.chatter());
        Answer answer;
        answer.json = plan_json(device);
        const std::string plan = plan_text(device);
        if (options->plan) {
            answer.text = plan;
            return answer;
        }
        if (!context.json) write_out(plan);
        require_consent(options->yes, "This cannot be undone.");
        Progress progress(!context.json);
        run_in_child([] { return qvresetsysconf(); }, context.chatter(),
                     [&](long seconds) { progress.show("Resetting", seconds); });
        progress.clear();
        answer.text = "The terminal has its factory settings and restarts.\n";
        return answer;
    };
}

} // namespace qvtc::qvtcctl
