#include "qvtcctl/client_verbs.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/failure_report.hpp"
#include "qvtcctl/follow.hpp"
#include "qvtcctl/processes.hpp"
#include "qvtcctl/refusal.hpp"
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
                  fmt::format("{} \"{}\" is no number of seconds from {} to {}.", what,
                              printable(text), least, most));
}

void require_launchable(const ConnectionType& type) {
    if (can_be_launched(type)) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} connections are started by the terminal's front-end only. From "
                              "here these can be: {}.",
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
    return "  The screen :0.0 could not be asked for its windows. Check that the X server runs and "
           "that xwininfo is installed.\n";
}

Answer timeout_answer(unsigned id, const Record& record, const LaunchOutcome& outcome,
                      unsigned timeout) {
    const bool client_seen = outcome.state == State::waiting;
    Answer answer;
    answer.code = ExitCode::timeout;
    answer.error = fmt::format("connection {} has no outcome after {} s: {}.\n{}"
                               "  What to do:      Give it more time with --timeout, or look again "
                               "with \"qvtcctl status {}\".\n",
                               label_of(id, record), timeout, words_of(outcome.state),
                               client_seen ? screen_remark(outcome.window) : "", id);
    return answer;
}

Answer waited_answer(unsigned id, const ConnectionType& type, const Record& record,
                     const LaunchOutcome& outcome, unsigned timeout) {
    Answer answer;
    if (outcome.timed_out) {
        answer = timeout_answer(id, record, outcome, timeout);
    } else if (outcome.state == State::failed) {
        answer.code = ExitCode::connection_failed;
        answer.error = fmt::format("connection {} failed.\n{}", label_of(id, record),
                                   explanation_text(outcome.explanation));
    } else {
        answer.text = fmt::format("Connection {}: connected\n", label_of(id, record));
    }
    answer.json = connection_head(id, type, record);
    add(answer.json, "state", outcome.timed_out ? "timeout" : name_of(outcome.state));
    add_number(answer.json, "milliseconds", outcome.took.count());
    if (outcome.state == State::failed) {
        add(answer.json, "reason", explanation_json(outcome.explanation));
    }
    return answer;
}

Answer started_answer(unsigned id, const ConnectionType& type, const Record& record) {
    Answer answer;
    answer.text = fmt::format("Started connection {}. \"qvtcctl status {}\" tells what has come of "
                              "it.\n",
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

std::string standing_text(unsigned id, const ConnectionType& type, const Record& record,
                          const Standing& standing) {
    std::string text =
        fmt::format("Connection {}: {}\n", label_of(id, record), words_of(standing.state));
    if (standing.state == State::waiting) {
        text += screen_remark(standing.window);
    } else if (standing.other_runs) {
        text += fmt::format("  Another {} connection's client is running.\n", type.title);
    } else if (standing.state == State::failed) {
        text += explanation_text(standing.last_words);
    } else if (standing.state == State::not_running && standing.last_words.known) {
        text += fmt::format("  The last {} client ended so:\n{}", type.title,
                            explanation_text(standing.last_words));
    }
    return text;
}

Json standing_json(unsigned id, const ConnectionType& type, const Record& record,
                   const Standing& standing) {
    Json map = connection_head(id, type, record);
    add(map, "state", name_of(standing.state));
    add_flag(map, "otherRuns", standing.other_runs);
    const bool ended = standing.state == State::not_running && standing.last_words.known;
    if (standing.state == State::failed || (ended && !standing.other_runs)) {
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
                  fmt::format("nothing is known of {} connections: the terminal's front-end alone "
                              "starts them. Known are: {}, and the {}.",
                              type.title, launchable_types(), connection_types[0].title));
}

// ------------------------------------------------------------------ cancel

template <typename Condition>
bool wait_for(Condition condition, std::chrono::milliseconds longest) {
    const auto end = std::chrono::steady_clock::now() + longest;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

Refusal client_stays(const std::vector<Process>& clients) {
    const pid_t pid = clients.empty() ? 0 : clients.front().pid;
    return Refusal(ExitCode::not_done,
                   fmt::format("the RDP client with process number {0} does not end. Try \"kill -9 "
                               "{0}\".",
                               pid));
}

} // namespace

Run define_launch(CLI::App& app) {
    struct Options {
        std::string id;
        bool wait = false;
        std::string timeout = std::to_string(default_timeout);
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_flag("--wait", options->wait, "wait for the outcome and tell it");
    app.add_option("--timeout", options->timeout,
                   fmt::format("how long --wait waits (default: {})", default_timeout))
        ->option_text("SECONDS");
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        const unsigned timeout = require_seconds(options->timeout, "--timeout", 1, longest_timeout);
        const ConnectionType& type = require_type_of_id(id);
        require_launchable(type);
        const Device device(context.chatter());
        const Record record = device.record(id);
        require_address(id, record);
        if (!options->wait) {
            device.launch(id);
            return started_answer(id, type, record);
        }
        Progress progress(!context.json);
        const LaunchOutcome outcome =
            launch_and_follow(device, type, record, std::chrono::seconds(timeout), progress);
        return waited_answer(id, type, record, outcome, timeout);
    };
}

Run define_status(CLI::App& app) {
    struct Options {
        std::string id;
        bool follow = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_flag("--follow", options->follow, "tell every change until the client has ended");
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        const ConnectionType& type = require_type_of_id(id);
        require_status(type);
        const Device device(context.chatter());
        const Record record = device.record(id);
        if (!can_be_launched(type)) return broker_answer(device, id, type, record);
        Answer answer;
        if (options->follow) {
            const Standing last =
                follow_standing(device, type, record, [&](const Standing& standing) {
                    write_out(context.json ? to_line(standing_json(id, type, record, standing))
                                           : standing_text(id, type, record, standing));
                });
            answer.code = code_of(last.state);
            return answer;
        }
        const Standing standing = standing_of(device, type, record);
        answer.code = code_of(standing.state);
        answer.text = standing_text(id, type, record, standing);
        answer.json = standing_json(id, type, record, standing);
        return answer;
    };
}

Run define_cancel(CLI::App&) {
    return [](const Context& context) {
        const std::string_view name = find_type("rdp")->process;
        const auto all_ended = [name] { return running_processes(name).empty(); };
        const Device device(context.chatter());
        const std::size_t clients = running_processes(name).size();
        device.cancel_rdp();
        // The library finds only clients that have a terminal; those started from here have none.
        if (!wait_for(all_ended, 500ms)) {
            for (const Process& client : running_processes(name)) kill(client.pid, SIGTERM);
        }
        if (!wait_for(all_ended, 3s)) throw client_stays(running_processes(name));
        Answer answer;
        answer.text = clients == 0   ? "No RDP client is running.\n"
                      : clients == 1 ? "Ended the RDP client.\n"
                                     : fmt::format("Ended {} RDP clients.\n", clients);
        answer.json = json_map();
        add_number(answer.json, "ended", static_cast<long>(clients));
        return answer;
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
