#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/processes.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/verb/child.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <array>
#include <chrono>
#include <filesystem>
#include <thread>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* remote_view_server = "x11vnc";
constexpr const char* pictures = "/usr/local/vpclient/bin/image";
constexpr std::array rotated_logs{"system.log", "freerdp.log", "spicec.log", "qvservice.log"};

/// When the older generation of each log was written; those that a start moves aside change.
std::array<fs::file_time_type, rotated_logs.size()> older_logs() {
    std::array<fs::file_time_type, rotated_logs.size()> times{};
    for (std::size_t i = 0; i < rotated_logs.size(); ++i) {
        std::error_code missing;
        const auto time =
            fs::last_write_time(fmt::format("/home/root/{}.old", rotated_logs[i]), missing);
        if (!missing) times[i] = time;
    }
    return times;
}

bool serves_remote_view() { return !running_processes(remote_view_server).empty(); }

struct Step {
    const char* name;
    const char* title;
    std::string outcome;
};

std::string sound_outcome() {
    return fs::exists(hdmi_marker) ? "goes to HDMI" : "unchanged: it does not go to HDMI";
}

std::string log_outcome(const std::array<fs::file_time_type, rotated_logs.size()>& before) {
    const auto after = older_logs();
    std::string moved;
    for (std::size_t i = 0; i < rotated_logs.size(); ++i) {
        if (before[i] == after[i]) continue;
        moved += fmt::format("{}{}", moved.empty() ? "" : ", ", rotated_logs[i]);
    }
    return moved.empty() ? "none has outgrown its limit" : "moved aside: " + moved;
}

std::string power_saving_outcome(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json idle(qvgetidle());
    if (!idle) return "unknown: the stored setting is not valid";
    if (text_member(idle.get(), "monitorPowerSave") != "on") return "off";
    return fmt::format("after {} min", text_member(idle.get(), "monitorPowerSaveMins"));
}

std::string brightness_outcome(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json monitor(qvgetmonitor());
    const std::string percent = monitor ? text_member(monitor.get(), "brightness") : "";
    return percent.empty() ? "unknown" : percent + " %";
}

/// The server is started in the background, and shows a moment later.
bool begins_to_serve() {
    const auto end = std::chrono::steady_clock::now() + 1s;
    while (!serves_remote_view()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

std::string remote_view_outcome(bool before) {
    if (before) return "was served already";
    return begins_to_serve() ? "is served" : "is not served";
}

std::string picture_outcome() {
    std::size_t count = 0;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(pictures, missing)) {
        const std::string name = entry.path().filename();
        if (name.starts_with("background-") || name.starts_with("connection-list-titlebar-"))
            ++count;
    }
    return fmt::format("{} in place", count);
}

Answer answer_of(const std::vector<Step>& steps) {
    std::vector<Row> rows{{"STEP", "OUTCOME"}};
    Answer answer;
    answer.json = json_map();
    for (const Step& step : steps) {
        rows.push_back({step.title, step.outcome});
        add(answer.json, step.name, step.outcome);
    }
    answer.text = layout(rows);
    return answer;
}

Answer run_init(const Request& request) {
    require_terminal();
    const Chatter chatter = request.chatter();
    const auto logs_before = older_logs();
    const bool served_before = serves_remote_view();
    Progress progress(!request.json);
    run_in_child([] { return qvtcinitapi(); }, chatter,
                 [&](long seconds) { progress.show("Starting", seconds); });
    progress.clear();
    return answer_of({{"sound", "Sound", sound_outcome()},
                      {"logs", "Logs", log_outcome(logs_before)},
                      {"powerSaving", "Power saving", power_saving_outcome(chatter)},
                      {"brightness", "Brightness", brightness_outcome(chatter)},
                      {"remoteView", "Remote view", remote_view_outcome(served_before)},
                      {"pictures", "Pictures", picture_outcome()}});
}

} // namespace

const Verb verbs::init{
    .name = "init",
    .summary = "Run the terminal's start sequence",
    .description = "Does what the front-end does first when the terminal starts, and shows the "
                   "result of each step: sound where it goes to HDMI, logs that have outgrown "
                   "their limits, power saving, brightness, the remote view's server, the "
                   "front-end's pictures.",
    .examples = {"qvtcctl init"},
    .run = run_init,
};

} // namespace qvtc::qvtcctl
