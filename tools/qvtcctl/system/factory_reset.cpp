#include "qvtcctl/base/confirmation.hpp"
#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/system/reset_files.hpp"
#include "qvtcctl/verb/child.hpp"
#include "qvtcctl/verb/stored_setting.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <qvtcapi/factory_defaults.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// The connections that a reset removes: it does not touch VNC's.
bool goes(const ConnectionType& type) { return type.number != QVTC_TYPE_VNC; }

std::size_t count_of(const StoredConnections& connections, bool going) {
    std::size_t count = 0;
    for (const ConnectionType& type : connection_types) {
        if (goes(type) == going) count += connections.records(type).size();
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

std::string count_text(std::size_t count, std::string_view kind) {
    return fmt::format("{} {}connection{}", count, kind, count == 1 ? "" : "s");
}

std::string connections_line(const StoredConnections& connections) {
    const std::size_t going = count_of(connections, true);
    const std::size_t staying = count_of(connections, false);
    if (going == 0 && staying == 0) return "";
    if (going == 0) return fmt::format("keeps {}", count_text(staying, "VNC "));
    if (staying == 0) return fmt::format("removes {}", count_text(going, "stored "));
    return fmt::format("removes {} (keeps {})", count_text(going, "stored "),
                       count_text(staying, "VNC "));
}

bool has_manager_password(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json answer(qvgetmgrpwd());
    return answer && !text_member(answer.get(), "password").empty();
}

bool has_wifi(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json answer(qvgetwifi());
    return answer && text_member(answer.get(), "status") == "1";
}

/// What the reset names the host after; an identity of one character names nothing.
std::string naming_identity(Chatter chatter) {
    std::string identity = stored_setting(setting_key::device_identity, chatter);
    return identity.size() > 1 ? identity : "";
}

std::string host_name_line(Chatter chatter) {
    const std::string identity = naming_identity(chatter);
    return identity.empty() ? "" : "sets the host name to TC" + printable(identity);
}

std::vector<ResetFile> touched_files(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json information(qvgetsysinfo());
    return reset_files({.names_host = !naming_identity(chatter).empty(),
                        .leaves_hdmi = text_member(information.get(), "productKey") == "RX16"});
}

std::string files_text(Chatter chatter) {
    std::vector<Row> rows{{"FILE", "WHAT BECOMES OF IT"}};
    for (const ResetFile& file : touched_files(chatter))
        rows.push_back({std::string(file.path), std::string(file.change)});
    return layout(rows);
}

std::string kept_line(Chatter chatter) {
    std::vector<std::string> kept;
    const auto keep = [&](const char* key, const char* meaning) {
        if (!stored_setting(key, chatter).empty()) kept.emplace_back(meaning);
    };
    keep(setting_key::main_port, "the stored addresses of eth0");
    keep(setting_key::extra_port, "the stored addresses of eth1");
    keep(setting_key::default_route, "the default route");
    keep(setting_key::date_and_time, "time zone and time server");
    if (is_installed("qvplugin")) kept.emplace_back("the numbered store");
    if (matches_a_file("/home/root/*.log.old")) kept.emplace_back("/home/root/*.log.old");
    if (matches_a_file("/etc/x11vnc.pass")) kept.emplace_back("/etc/x11vnc.pass");
    return kept.empty() ? "" : fmt::format("keeps {}", fmt::join(kept, ", "));
}

/// What a reset does to this terminal: nothing of what it has not.
std::string plan_text(const StoredConnections& connections, Chatter chatter) {
    std::vector<std::string> lines{connections_line(connections)};
    if (has_manager_password(chatter)) lines.emplace_back("removes the manager password");
    if (has_wifi(chatter)) lines.emplace_back("forgets the wireless networks that were joined");
    lines.emplace_back("sets the wired ports to DHCP");
    lines.push_back(host_name_line(chatter));
    lines.emplace_back("mirrors all screens, in automatic resolution");
    lines.emplace_back("ends RDP sessions and sets up the sound");
    lines.push_back(kept_line(chatter));
    lines.emplace_back("writes the settings below, and writes or removes the files below them");
    std::erase(lines, "");
    std::string text = "A factory reset of this terminal\n";
    for (const std::string& line : lines) text += fmt::format("  - {};\n", line);
    return text + fmt::format("  - restarts the terminal.\n\n{}\n{}\n", defaults_text(),
                              files_text(chatter));
}

void require_reset(const StoredConnections& connections, const LogMark& log) {
    if (count_of(connections, true) == 0 &&
        connections.connect_delay() == qvtc_factory_defaults[0].value)
        return;
    throw not_taken("the terminal restarts, but its factory settings were not stored", log);
}

Json plan_json(const StoredConnections& connections, Chatter chatter) {
    Json plan = json_map();
    add_number(plan, "connectionsForgotten", static_cast<long>(count_of(connections, true)));
    add_number(plan, "connectionsKept", static_cast<long>(count_of(connections, false)));
    Json settings = json_map();
    for (const qvtc_factory_default& each : qvtc_factory_defaults)
        add(settings, each.key, shown_default(each.value));
    add(plan, "settings", std::move(settings));
    Json files = json_map();
    for (const ResetFile& file : touched_files(chatter))
        add(files, std::string(file.path).c_str(), file.change);
    add(plan, "files", std::move(files));
    return plan;
}

const Argument plan_flag = flag("--plan", "only show what would be done");

Answer run_factory_reset(const Request& request) {
    const StoredConnections connections(request.chatter());
    Answer answer;
    answer.json = plan_json(connections, request.chatter());
    const std::string plan = plan_text(connections, request.chatter());
    if (request.has(plan_flag)) {
        answer.text = plan;
        return answer;
    }
    if (!request.json) write_out(plan);
    require_consent(request.has(yes_flag), "This cannot be undone.");
    const LogMark log{std::string(system_log)};
    Progress progress(!request.json);
    run_in_child([] { return qvresetsysconf(); }, request.chatter(),
                 [&](long seconds) { progress.show("Resetting", seconds); });
    progress.clear();
    require_reset(connections, log);
    answer.text = "The terminal has its factory settings and restarts.\n";
    return answer;
}

} // namespace

const Verb verbs::factory_reset{
    .name = "factory-reset",
    .summary = "Return the terminal to its factory state",
    .description = "Shows what a factory reset does to this terminal, asks you, does it and "
                   "restarts the terminal. With --plan it only shows it.",
    .examples = {"qvtcctl factory-reset --plan", "qvtcctl factory-reset"},
    .arguments = {yes_flag, plan_flag},
    .run = run_factory_reset,
};

} // namespace qvtc::qvtcctl
