#include "qvtcctl/client_verbs.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/failure_report.hpp"
#include "qvtcctl/follow.hpp"
#include "qvtcctl/processes.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/storage.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/validation.hpp"

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr unsigned default_timeout = 30;
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
        text += "  The last launch failed or ended:\n" + explanation_text(standing.last_words);
    }
    return text;
}

Json standing_json(unsigned id, const ConnectionType& type, const Record& record,
                   const Standing& standing) {
    Json map = connection_head(id, type, record);
    add(map, "state", name_of(standing.state));
    add_logon(map, standing.logon);
    add_flag(map, "otherRuns", standing.other_runs);
    if (standing.state == State::failed || ended_with_reason(standing)) {
        add(map, "reason", explanation_json(standing.last_words));
    }
    return map;
}

Answer broker_answer(const Device& device, unsigned id, const ConnectionType& type,
                     const Record& record) {
    const std::string reason = reason_of(device.client_status(id));
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
Answer end_all_clients(const Device& device) {
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
    device.cancel_rdp();
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

void add_notes(Answer& answer, std::vector<std::string> notes) {
    Json list = json_list();
    for (const std::string& note : notes) append(list, json_text(note));
    add(answer.json, "notes", std::move(list));
    answer.notes = std::move(notes);
}

Answer launch(const Device& device, unsigned id, const Record& record,
              std::optional<unsigned> timeout, Progress& progress) {
    const ConnectionType& type = require_type_of_id(id);
    if (!timeout) {
        device.launch(id);
        return started_answer(id, type, record);
    }
    const LaunchOutcome outcome =
        launch_and_follow(device, type, record, std::chrono::seconds(*timeout), progress);
    return waited_answer(id, type, record, outcome, *timeout);
}

} // namespace

Run define_launch(CLI::App& app) {
    struct Options {
        std::string id;
        bool wait = false;
        bool end_others = false;
        std::string timeout;
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_flag("--wait", options->wait, "wait for the outcome and show it");
    app.add_option("--timeout", options->timeout,
                   fmt::format("how long --wait waits (default: {})", default_timeout))
        ->option_text("SECONDS");
    app.add_flag("--end-others", options->end_others,
                 "first end all running clients of the same kind");
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        if (!options->wait && !options->timeout.empty()) {
            throw UsageError("--timeout can be used only with --wait.");
        }
        std::optional<unsigned> timeout;
        if (options->wait) {
            timeout = options->timeout.empty()
                          ? default_timeout
                          : require_seconds(options->timeout, "--timeout", 1, longest_timeout);
        }
        const ConnectionType& type = require_type_of_id(id);
        require_launchable(type);
        const Device device(context.chatter());
        const Record record = device.record(id);
        require_address(id, record);
        const std::vector<Process> former = running_clients(type);
        if (options->end_others) end_clients(former);
        const std::optional<std::string> fault = storage_fault(storage_folder);
        Progress progress(options->wait && !context.json);
        Answer answer = launch(device, id, record, timeout, progress);
        std::vector<std::string> notes = notes_on(id, type, former);
        if (fault) notes.push_back(storage_note(*fault));
        add_notes(answer, std::move(notes));
        return answer;
    };
}

Run define_status(CLI::App& app) {
    struct Options {
        std::string id;
        bool follow = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_flag("--follow", options->follow, "show every change until the client has ended");
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        const ConnectionType& type = require_type_of_id(id);
        require_status(type);
        const Device device(context.chatter());
        const Record record = device.record(id);
        if (!can_be_launched(type)) return broker_answer(device, id, type, record);
        Answer answer;
        if (options->follow) {
            const Standing last = follow_standing(device, type, record, [&](Standing standing) {
                standing.logon = logon_when(standing.state, type, record);
                write_out(context.json ? to_line(standing_json(id, type, record, standing))
                                       : standing_text(id, type, record, standing));
            });
            answer.code = code_of(last.state);
            return answer;
        }
        Standing standing = standing_of(device, type, record);
        standing.logon = logon_when(standing.state, type, record);
        answer.code = code_of(standing.state);
        answer.text = standing_text(id, type, record, standing);
        answer.json = standing_json(id, type, record, standing);
        return answer;
    };
}

Run define_cancel(CLI::App& app) {
    auto text = std::make_shared<std::string>();
    app.add_option("ID", *text, "number of a connection; without it, all clients are ended");
    return [text](const Context& context) {
        std::optional<unsigned> id;
        if (!text->empty()) id = require_id(*text);
        const Device device(context.chatter());
        return id ? end_client_of(device, *id) : end_all_clients(device);
    };
}

Run define_delay(CLI::App& app) {
    auto seconds = std::make_shared<std::string>();
    app.add_option("SECONDS", *seconds, fmt::format("0 to {}", longest_delay));
    return [seconds](const Context& context) {
        std::optional<unsigned> wanted;
        if (!seconds->empty()) wanted = require_seconds(*seconds, "the delay", 0, longest_delay);
        const Device device(context.chatter());
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
    };
}

} // namespace qvtc::qvtcctl
