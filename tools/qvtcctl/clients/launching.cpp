#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/clients/ending.hpp"
#include "qvtcctl/clients/failure_report.hpp"
#include "qvtcctl/clients/follow.hpp"
#include "qvtcctl/clients/launchable.hpp"
#include "qvtcctl/clients/launcher.hpp"
#include "qvtcctl/clients/running_clients.hpp"
#include "qvtcctl/clients/storage.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/connections/validation.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <chrono>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr unsigned default_timeout = 30;
constexpr unsigned look_without_log = 5;
constexpr unsigned longest_timeout = 3600;

void require_address(unsigned id, const Record& record) {
    if (record.address().size() >= shortest_address) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("connection {} has no usable serverAddress. Set one: \"qvtcctl "
                              "connection set {} serverAddress=ADDRESS\".",
                              label_of(id, record), id));
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

const Argument wait_flag = flag("--wait", "wait for the outcome and show it");
const Argument timeout_option = option(
    "--timeout", "SECONDS", fmt::format("how long --wait waits (default: {})", default_timeout));
const Argument end_others_flag =
    flag("--end-others", "first end all running clients of the same kind");

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
    const StoredConnections connections(request.chatter());
    const Record record = connections.record(id);
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

} // namespace qvtc::qvtcctl
