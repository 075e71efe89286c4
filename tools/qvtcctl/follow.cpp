#include "qvtcctl/follow.hpp"

#include "qvtcctl/client_status_file.hpp"
#include "qvtcctl/installed.hpp"
#include "qvtcctl/processes.hpp"
#include "qvtcctl/system_log.hpp"

#include <algorithm>
#include <thread>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto between_looks = 500ms;
constexpr std::uintmax_t log_limit = 128UL * 1024;

/// What a launch is compared with afterwards.
struct BeforeLaunch {
    explicit BeforeLaunch(const ConnectionType& type)
        : client_log(std::string(type.log)), library_log(std::string(system_log)),
          start(Clock::now()) {}

    ClientStatusFile status_file;
    LogMark client_log;
    LogMark library_log;
    Clock::time_point start;
};

/// The RDP launcher begins its log anew; the others add to theirs, and VNC's has no start marks.
std::string words_since_launch(const ConnectionType& type, const BeforeLaunch& before) {
    if (type.log.empty()) return "";
    const std::string log = type.number == QVTC_TYPE_RDP
                                ? file_tail(std::string(type.log), log_limit)
                                : before.client_log.added();
    return std::string(since_last_start(log));
}

/// SPICE's viewer, when it has been asked to tell what it does.
bool viewer_talks(const ConnectionType& type, std::string_view log) {
    return type.number == QVTC_TYPE_SPICE &&
           log.find("virt-viewer-DEBUG") != std::string_view::npos;
}

Look look_at(const Device& device, const ConnectionType& type, unsigned id,
             const BeforeLaunch& before) {
    Look look;
    look.status = device.client_status(id);
    look.client_runs = !running_processes(type.process).empty();
    if (look.client_runs) look.window = look_for_window(type.window);
    look.verdict = before.status_file.new_verdict();
    const std::string words = words_since_launch(type, before);
    look.log_names_failure = names_failure(type, words);
    look.client_talks = viewer_talks(type, words);
    look.since_launch =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - before.start);
    return look;
}

/// What the library wrote when it gave the launch up before it started a client; else empty.
std::string why_given_up(const BeforeLaunch& before) {
    constexpr std::string_view sign = "decode error";
    const std::string complaint = last_complaint(before.library_log.added());
    return complaint.find(sign) == std::string::npos ? "" : complaint;
}

Explanation explain_given_up(const ConnectionType& type, unsigned id,
                             const std::string& complaint) {
    Explanation told = explain(type, id, complaint, "");
    told.log = system_log;
    told.words = "";
    return told;
}

/// Why a client of which the terminal has seen no window has failed.
Explanation without_window(const ConnectionType& type, unsigned id, std::string_view log,
                           Explanation told) {
    if (told.known) return told;
    if (is_installed(type.process)) return explain_missing_window(type, id, log);
    return explain(type, id, "", "command not found"); // as its shell would say
}

Explanation explain_launch(const ConnectionType& type, unsigned id, const Look& look,
                           const BeforeLaunch& before) {
    const std::string words = words_since_launch(type, before);
    Explanation told = explain(type, id, words, reason_of(look.status));
    if (look.verdict != WatcherVerdict::failed) return told;
    return without_window(type, id, words, std::move(told));
}

} // namespace

LaunchOutcome launch_and_follow(const Device& device, const ConnectionType& type,
                                const Record& record, std::chrono::seconds timeout,
                                Progress& progress) {
    const unsigned id = record.id().value_or(0);
    const std::string label = label_of(id, record);
    const auto show = [&](State state, std::chrono::milliseconds since) {
        progress.show(fmt::format("Connection {}: {}", label, words_of(state)),
                      std::chrono::duration_cast<std::chrono::seconds>(since).count());
    };
    show(State::starting, 0ms);
    const BeforeLaunch before(type);
    device.launch(id);
    LaunchJudge judge(type);
    LaunchOutcome outcome;
    if (const std::string complaint = why_given_up(before); !complaint.empty()) {
        outcome.state = State::failed;
        outcome.explanation = explain_given_up(type, id, complaint);
        return outcome;
    }
    while (true) {
        const Look look = look_at(device, type, id, before);
        outcome.state = judge.judge(look);
        outcome.window = look.window;
        outcome.took = look.since_launch;
        if (outcome.state == State::connected) return outcome;
        if (outcome.state == State::failed) {
            outcome.explanation = explain_launch(type, id, look, before);
            return outcome;
        }
        outcome.timed_out = look.since_launch >= timeout;
        if (outcome.timed_out) return outcome;
        show(outcome.state, look.since_launch);
        std::this_thread::sleep_for(between_looks);
    }
}

Standing standing_of(const Device& device, const ConnectionType& type, const Record& record) {
    const unsigned id = record.id().value_or(0);
    const std::vector<Process> clients = running_processes(type.process);
    const bool ours = std::any_of(clients.begin(), clients.end(), [&](const Process& client) {
        return serves(client, type, record);
    });
    Look look;
    look.status = device.client_status(id);
    look.client_runs = ours;
    if (ours) look.window = look_for_window(type.window);
    look.verdict = ClientStatusFile::verdict();
    const std::string log = type.log.empty() ? "" : file_tail(std::string(type.log), log_limit);
    if (type.number == QVTC_TYPE_SPICE) { // of the others' logs it is not known where they begin
        look.log_names_failure = names_failure(type, since_last_start(log));
        look.client_talks = viewer_talks(type, since_last_start(log));
    }
    Standing standing;
    standing.state = state_of(type, look);
    standing.window = look.window;
    standing.other_runs = !ours && !clients.empty();
    standing.last_words = explain(type, id, since_last_start(log), reason_of(look.status));
    if (look.verdict == WatcherVerdict::failed) {
        standing.last_words =
            without_window(type, id, since_last_start(log), std::move(standing.last_words));
    }
    return standing;
}

Standing follow_standing(const Device& device, const ConnectionType& type, const Record& record,
                         const std::function<void(const Standing&)>& tell) {
    std::optional<State> told;
    while (true) {
        Standing standing = standing_of(device, type, record);
        if (standing.state != told) tell(standing);
        told = standing.state;
        if (*told == State::failed || *told == State::not_running) return standing;
        std::this_thread::sleep_for(between_looks);
    }
}

} // namespace qvtc::qvtcctl
