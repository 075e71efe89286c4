#include "qvtcctl/answer.hpp"
#include "qvtcctl/connection_words.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/failure_report.hpp"
#include "qvtcctl/follow.hpp"
#include "qvtcctl/launcher.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/running_clients.hpp"
#include "qvtcctl/storage.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/validation.hpp"
#include "qvtcctl/verbs.hpp"

#include <chrono>
#include <csignal>
#include <thread>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr unsigned default_timeout = 30;
constexpr unsigned look_without_log = 5;
constexpr unsigned longest_timeout = 3600;
constexpr unsigned longest_delay = 86400;

std::string launchable_types() {
    std::string names;
    for (const ConnectionType& type : connection_types) {
        if (!can_be_launched(type)) continue;
        names += fmt::format("{}{}", names.empty() ? "" : ", ", type.title);
    }
    return names;
}

unsigned require_seconds(const std::string& text, std::string_view what, unsigned least,
                         unsigned most) {
    const std::optional<unsigned> seconds = parse_number(text);
    if (seconds && *seconds >= least && *seconds <= most) return *seconds;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} \"{}\" must be a number of seconds from {} to {}.", what,
                              printable(text), least, most));
}

void require_launchable(const ConnectionType& type) {
    if (can_be_launched(type)) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} connections can be started only by the terminal's front-end. "
                              "These can be started from here: {}.",
                              type.title, launchable_types()));
}

void require_address(unsigned id, const Record& record) {
    if (record.address().size() >= shortest_address) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("connection {} has no usable serverAddress. Set one: \"qvtcctl "
                              "connection set {} serverAddress=ADDRESS\".",
                              label_of(id, record), id));
}

Json connection_head(unsigned id, const ConnectionType& type, const Record& record) {
    Json map = json_map();
    add_number(map, "id", id);
    add(map, "type", type.name);
    add(map, "name", record.name());
    return map;
}

/// A line of its own when the state is only half of the truth.
std::string screen_remark(Sight window) {
    if (window != Sight::unknown) return "";
    return "  Display :0.0 did not respond. Check that the X server runs and that xwininfo is "
           "installed.\n";
}

Answer timeout_answer(unsigned id, const Record& record, const LaunchOutcome& outcome,
                      unsigned timeout) {
    const bool client_seen = outcome.state == State::waiting;
    const bool asking = outcome.state == State::asking;
    Answer answer;
    answer.code = ExitCode::timeout;
    answer.error = fmt::format(
        "connection {} has no outcome after {} s: {}.\n{}  What to do:      {}, or look again with "
        "\"qvtcctl status {}\".\n",
        label_of(id, record), timeout, words_of(outcome.state),
        client_seen ? screen_remark(outcome.window) : "",
        asking ? "Enter it there" : "Give it more time with --timeout", id);
    return answer;
}

Answer waited_answer(unsigned id, const ConnectionType& type, const Record& record,
                     const LaunchOutcome& outcome, unsigned timeout) {
    const Logon logon = logon_when(outcome.state, type, record);
    Answer answer;
    if (outcome.timed_out) {
        answer = timeout_answer(id, record, outcome, timeout);
    } else if (outcome.state == State::failed) {
        answer.code = ExitCode::connection_failed;
        answer.error = fmt::format("connection {} failed.\n{}", label_of(id, record),
                                   explanation_text(outcome.explanation));
    } else {
        answer.text = fmt::format("Connection {}: {}\n", label_of(id, record),
                                  words_of(outcome.state, logon));
    }
    answer.json = connection_head(id, type, record);
    add(answer.json, "state", outcome.timed_out ? "timeout" : name_of(outcome.state));
    add_logon(answer.json, logon);
    add_number(answer.json, "milliseconds", outcome.took.count());
    if (outcome.state == State::failed) {
        add(answer.json, "reason", explanation_json(outcome.explanation));
    }
    return answer;
}

Answer started_answer(unsigned id, const ConnectionType& type, const Record& record) {
    Answer answer;
    answer.text = fmt::format("Starting connection {}. \"qvtcctl status {}\" shows the outcome.\n",
                              label_of(id, record), id);
    answer.json = connection_head(id, type, record);
    add(answer.json, "state", name_of(State::starting));
    return answer;
}

// ------------------------------------------------------------------ status

ExitCode code_of(State state) {
    switch (state) {
    case State::connected:
        return ExitCode::done;
    case State::failed:
    case State::not_running:
        return ExitCode::connection_failed;
    default:
        return ExitCode::timeout;
    }
}

bool ended_with_reason(const Standing& standing) {
    return standing.state == State::not_running && standing.last_words.known;
}

std::string standing_text(unsigned id, const ConnectionType& type, const Record& record,
                          const Standing& standing) {
    std::string text = fmt::format("Connection {}: {}\n", label_of(id, record),
                                   words_of(standing.state, standing.logon));
    if (standing.other_runs) {
        text += fmt::format("  Another {} connection's client is running.\n", type.title);
    }
    if (standing.state == State::waiting) {
        text += screen_remark(standing.window);
    } else if (standing.state == State::failed) {
        text += explanation_text(standing.last_words);
    } else if (ended_with_reason(standing)) {
        text += fmt::format("  The last launch{} failed or ended:\n{}",
                            standing.storage_fault ? " that has left a log" : "",
                            explanation_text(standing.last_words));
    }
    if (standing.storage_fault) text += explanation_text(explain_storage(*standing.storage_fault));
    return text;
}

Json standing_json(unsigned id, const ConnectionType& type, const Record& record,
                   const Standing& standing) {
    Json map = connection_head(id, type, record);
    add(map, "state", name_of(standing.state));
    add_logon(map, standing.logon);
    add_flag(map, "otherRuns", standing.other_runs);
    if (standing.storage_fault) add(map, "storageFault", *standing.storage_fault);
    if (standing.state == State::failed || ended_with_reason(standing)) {
        add(map, "reason", explanation_json(standing.last_words));
    }
    return map;
}

Answer broker_answer(const Launcher& launcher, unsigned id, const ConnectionType& type,
                     const Record& record) {
    const std::string reason = reason_of(launcher.status(id));
    Answer answer;
    answer.code = reason.empty() ? ExitCode::done : ExitCode::connection_failed;
    answer.json = connection_head(id, type, record);
    add(answer.json, "state", reason.empty() ? "reachable" : "failed");
    answer.text = fmt::format("Connection {}: the broker {}\n", label_of(id, record),
                              reason.empty() ? "answers" : "does not answer");
    if (reason.empty()) return answer;
    const Explanation explanation = explain(type, id, "", reason);
    answer.text += explanation_text(explanation);
    add(answer.json, "reason", explanation_json(explanation));
    return answer;
}

void require_status(const ConnectionType& type) {
    if (can_be_launched(type) || type.number == QVTC_TYPE_BROKER) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} connections have no status here: only the terminal's front-end "
                              "starts them. These have one: {}, and the {}.",
                              type.title, launchable_types(), connection_types[0].title));
}

// ------------------------------------------------------------------ cancel

constexpr auto longest_end = 3s;

/// Ends these clients. Refuses when one of them does not end.
void end_clients(const std::vector<Process>& clients) {
    for (const Process& client : clients) kill(client.pid, SIGTERM);
    const std::vector<Process> left = wait_for_end(clients, longest_end);
    if (left.empty()) return;
    throw Refusal(ExitCode::not_done, fmt::format("the client with process number {0} does not "
                                                  "end. Try \"kill -9 {0}\".",
                                                  left.front().pid));
}

/// Ends every client that can be launched from here, and says how many of which kind.
Answer end_all_clients(const Launcher& launcher) {
    std::vector<Process> clients;
    std::string kinds;
    for (const ConnectionType& type : connection_types) {
        if (!can_be_launched(type)) continue;
        const std::vector<Process> running = running_clients(type);
        if (running.empty()) continue;
        clients.insert(clients.end(), running.begin(), running.end());
        kinds += fmt::format("{}{} {}", kinds.empty() ? "" : ", ", running.size(), type.title);
    }
    // The library finds only RDP clients that have a tty; those started from here have none.
    launcher.cancel_rdp();
    end_clients(clients);
    Answer answer;
    answer.text =
        clients.empty() ? "No client is running.\n" : fmt::format("Ended clients: {}.\n", kinds);
    answer.json = json_map();
    add_number(answer.json, "ended", static_cast<long>(clients.size()));
    return answer;
}

Answer end_client_of(const Device& device, unsigned id) {
    const ConnectionType& type = require_type_of_id(id);
    require_launchable(type);
    const Record record = device.record(id);
    const std::vector<Process> clients = clients_of(type, record);
    end_clients(clients);
    Answer answer;
    const std::string label = label_of(id, record);
    answer.text = clients.empty() ? fmt::format("No client of connection {} is running.\n", label)
                                  : fmt::format("Ended the client of connection {}.\n", label);
    answer.json = json_map();
    add_number(answer.json, "ended", static_cast<long>(clients.size()));
    return answer;
}

// ------------------------------------------------------------------ launch

/// What is to be known of clients of the same kind that the launch has not ended.
std::vector<std::string> notes_on(unsigned id, const ConnectionType& type,
                                  const std::vector<Process>& former) {
    // The launch ends those that it knows, which takes them a moment.
    const std::vector<Process> left = wait_for_end(former, 500ms);
    std::vector<std::string> notes;
    for (const Process& client : left) {
        const std::string_view effect = type.number == QVTC_TYPE_WEB
                                            ? "and shows the page in another tab"
                                            : "and its window lies over or under the new one";
        notes.push_back(fmt::format("Another {} client is still running (process {}), {}. "
                                    "\"qvtcctl launch {} --end-others\" ends it first.",
                                    type.title, client.pid, effect, id));
    }
    return notes;
}

Answer launch(const Launcher& launcher, unsigned id, const Record& record,
              std::optional<unsigned> timeout, Progress& progress) {
    const ConnectionType& type = require_type_of_id(id);
    if (!timeout && !log_fault(type)) {
        launcher.launch(id);
        return started_answer(id, type, record);
    }
    // Without a log nobody could tell later that the client has not come up at all.
    const std::chrono::seconds longest(timeout.value_or(look_without_log));
    const LaunchOutcome outcome = launch_and_follow(launcher, type, record, longest, progress);
    if (!timeout && outcome.state != State::failed) return started_answer(id, type, record);
    return waited_answer(id, type, record, outcome, timeout.value_or(0));
}

const Argument id_argument =
    required_argument("ID", "number of the connection").completed_by(connection_words);
const Argument wait_flag = flag("--wait", "wait for the outcome and show it");
const Argument timeout_option = option(
    "--timeout", "SECONDS", fmt::format("how long --wait waits (default: {})", default_timeout));
const Argument end_others_flag =
    flag("--end-others", "first end all running clients of the same kind");
const Argument follow_flag = flag("--follow", "show every change until the client has ended");
const Argument cancel_id_argument =
    optional_argument("ID", "number of a connection; without it, all clients are ended")
        .completed_by(connection_words);
const Argument seconds_argument =
    optional_argument("SECONDS", fmt::format("0 to {}", longest_delay));

Answer run_launch(const Request& request) {
    const unsigned id = require_id(request.text(id_argument));
    if (!request.has(wait_flag) && !request.text(timeout_option).empty()) {
        throw UsageError("--timeout can be used only with --wait.");
    }
    std::optional<unsigned> timeout;
    if (request.has(wait_flag)) {
        timeout =
            request.text(timeout_option).empty()
                ? default_timeout
                : require_seconds(request.text(timeout_option), "--timeout", 1, longest_timeout);
    }
    const ConnectionType& type = require_type_of_id(id);
    require_launchable(type);
    const Device device(request.chatter());
    const Record record = device.record(id);
    require_address(id, record);
    const std::vector<Process> former = running_clients(type);
    if (request.has(end_others_flag)) end_clients(former);
    const std::optional<std::string> fault = storage_fault(storage_folder);
    Progress progress(request.has(wait_flag) && !request.json);
    Answer answer = launch(Launcher(request.chatter()), id, record, timeout, progress);
    std::vector<std::string> notes = notes_on(id, type, former);
    if (fault) notes.push_back(storage_note(*fault));
    add_notes(answer, std::move(notes));
    return answer;
}

Answer run_status(const Request& request) {
    const unsigned id = require_id(request.text(id_argument));
    const ConnectionType& type = require_type_of_id(id);
    require_status(type);
    const Record record = Device(request.chatter()).record(id);
    const Launcher launcher(request.chatter());
    if (!can_be_launched(type)) return broker_answer(launcher, id, type, record);
    Answer answer;
    if (request.has(follow_flag)) {
        const Standing last = follow_standing(launcher, type, record, [&](Standing standing) {
            standing.logon = logon_when(standing.state, type, record);
            write_out(request.json ? to_line(standing_json(id, type, record, standing))
                                   : standing_text(id, type, record, standing));
        });
        answer.code = code_of(last.state);
        return answer;
    }
    Standing standing = standing_of(launcher, type, record);
    standing.logon = logon_when(standing.state, type, record);
    answer.code = code_of(standing.state);
    answer.text = standing_text(id, type, record, standing);
    answer.json = standing_json(id, type, record, standing);
    return answer;
}

Answer run_cancel(const Request& request) {
    std::optional<unsigned> id;
    if (!request.text(cancel_id_argument).empty())
        id = require_id(request.text(cancel_id_argument));
    const Device device(request.chatter());
    return id ? end_client_of(device, *id) : end_all_clients(Launcher(request.chatter()));
}

Answer run_delay(const Request& request) {
    std::optional<unsigned> wanted;
    if (!request.text(seconds_argument).empty())
        wanted = require_seconds(request.text(seconds_argument), "the delay", 0, longest_delay);
    const Device device(request.chatter());
    if (wanted) device.set_connect_delay(*wanted);
    const std::optional<std::string> delay = device.connect_delay();
    Answer answer;
    answer.text = !delay   ? "No delay is set.\n"
                  : wanted ? fmt::format("The delay is now {} s.\n", *delay)
                           : fmt::format("{} s\n", *delay);
    answer.json = json_map();
    const std::optional<unsigned> number = parse_number(delay.value_or(""));
    if (number) {
        add_number(answer.json, "delay", *number);
    } else {
        add(answer.json, "delay", delay ? json_text(*delay) : Json());
    }
    return answer;
}

} // namespace

const Verb verbs::launch{
    .name = "launch",
    .summary = "Start a connection's client",
    .description = "Starts the client of a stored connection. A running RDP, Horizon or VNC "
                   "client is ended first, and so is a browser whose process is called firefox. "
                   "Other browsers and SPICE clients go on running, with a note, unless "
                   "--end-others is given: two SPICE windows lie one over the other, and a "
                   "browser shows the new page in another tab. With --wait it shows the "
                   "progress until the client is connected, has failed, or the time is over. "
                   "\"Connected\" means that the client says so in its log or, where it says "
                   "nothing, that its window is there and stays. A slow client has not failed: "
                   "it has failed when it is gone or when its log names the failure.",
    .examples = {"qvtcctl launch 32", "qvtcctl launch 32 --wait",
                 "qvtcctl launch 32 --wait --timeout 60 --json", "qvtcctl launch 64 --end-others"},
    .arguments = {id_argument, wait_flag, timeout_option, end_others_flag},
    .run = run_launch,
};

const Verb verbs::status{
    .name = "status",
    .summary = "Show how a connection stands",
    .description = "Shows whether a connection's client runs and whether it is connected. What "
                   "is said of a failure comes from the last launch of this connection. With "
                   "--follow it shows every change, until the client has ended or failed.",
    .examples = {"qvtcctl status 32", "qvtcctl status 32 --follow"},
    .arguments = {id_argument, follow_flag},
    .run = run_status,
};

const Verb verbs::cancel{
    .name = "cancel",
    .summary = "End running clients",
    .description = "Ends the client of one connection, or all running clients: RDP, SPICE, "
                   "Horizon, VNC and web. A browser is ended as a whole, with all its pages.",
    .examples = {"qvtcctl cancel", "qvtcctl cancel 64"},
    .arguments = {cancel_id_argument},
    .settings = Settings::not_needed,
    .run = run_cancel,
};

const Verb verbs::delay{
    .name = "delay",
    .summary = "Show or set the delay before an automatic connection",
    .description = "Shows the seconds that the terminal waits before it connects by itself, or "
                   "sets them.",
    .examples = {"qvtcctl delay", "qvtcctl delay 10"},
    .arguments = {seconds_argument},
    .run = run_delay,
};

} // namespace qvtc::qvtcctl
