#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/clients/failure_report.hpp"
#include "qvtcctl/clients/follow.hpp"
#include "qvtcctl/clients/launchable.hpp"
#include "qvtcctl/clients/launcher.hpp"
#include "qvtcctl/clients/storage.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

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

const Argument follow_flag = flag("--follow", "show every change until the client has ended");

Answer run_status(const Request& request) {
    const unsigned id = require_id(request.text(id_argument));
    const ConnectionType& type = require_type_of_id(id);
    require_status(type);
    const Record record = StoredConnections(request.chatter()).record(id);
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

} // namespace

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

} // namespace qvtc::qvtcctl
