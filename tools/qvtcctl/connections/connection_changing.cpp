#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/secrets.hpp"
#include "qvtcctl/connections/advice.hpp"
#include "qvtcctl/connections/assignments.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/password.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/connections/validation.hpp"
#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/change_lock.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

const Argument password_flag = flag("--password", "ask for the password");
const Argument password_stdin_flag =
    flag("--password-stdin", "read the password from standard input");
const Argument gateway_password_flag = flag("--gateway-password", "ask for the gateway's password");
const Argument gateway_password_stdin_flag =
    flag("--gateway-password-stdin", "read the gateway's password from standard input");

struct PasswordOptions {
    explicit PasswordOptions(const Request& request)
        : password(request.has(password_flag)), password_stdin(request.has(password_stdin_flag)),
          gateway(request.has(gateway_password_flag)),
          gateway_stdin(request.has(gateway_password_stdin_flag)) {}

    bool any() const { return password || password_stdin || gateway || gateway_stdin; }

    bool password;
    bool password_stdin;
    bool gateway;
    bool gateway_stdin;
};

void require_one_way(bool asked, bool read, std::string_view name) {
    if (asked && read) {
        throw UsageError(fmt::format("--{0} and --{0}-stdin cannot be used together.", name));
    }
}

/// The passwords that the options ask for, in their stored form.
std::vector<Assignment> collect_passwords(const PasswordOptions& options,
                                          const ConnectionType& type) {
    require_one_way(options.password, options.password_stdin, "password");
    require_one_way(options.gateway, options.gateway_stdin, "gateway-password");
    std::vector<Assignment> collected;
    const auto collect = [&](bool ask, bool read, std::size_t field, const std::string& what) {
        if (!ask && !read) return;
        const std::string password = ask ? ask_for_password(what) : read_password_line(what);
        require_password(fields[field], type, password);
        collected.push_back({field, stored_password(type, password)});
    };
    collect(options.password, options.password_stdin, field_index("password"), "password");
    collect(options.gateway, options.gateway_stdin, field_index("rdGatewayPassword"),
            "gateway password");
    if (options.password_stdin || options.gateway_stdin) require_end_of_input();
    return collected;
}

std::vector<std::size_t> named_fields(const std::vector<Assignment>& assignments,
                                      const std::vector<Assignment>& passwords) {
    std::vector<std::size_t> named;
    for (const auto* list : {&assignments, &passwords}) {
        for (const Assignment& assignment : *list) named.push_back(assignment.field);
    }
    return named;
}

void put(const std::vector<Assignment>& passwords, Record& record) {
    for (const Assignment& password : passwords) record[password.field] = password.value;
}

/// What came of it: the word for a person, and whether anything was stored.
struct Outcome {
    std::string_view word;
    bool changed;
};
constexpr Outcome added{"Added", true};
constexpr Outcome changed{"Changed", true};
constexpr Outcome unchanged{"Unchanged:", false};

Answer changed_answer(const Outcome& outcome, unsigned id, const Record& record,
                      std::vector<std::string> notes) {
    Answer answer;
    answer.text = fmt::format("{} connection {}.\n", outcome.word, label_of(id, record));
    answer.json = json_map();
    add_flag(answer.json, "changed", outcome.changed);
    add(answer.json, "connection", record_json(record, Passwords::hidden, true));
    add_notes(answer, std::move(notes));
    return answer;
}

const Argument type_argument =
    required_argument("TYPE", "type of the connection").completed_by(type_words);
const Argument values_argument =
    required_list("FIELD=VALUE", "the values of its fields").completed_by(assignment_words);
const Argument changes_argument =
    optional_list("FIELD=VALUE", "the fields to change; an empty VALUE clears")
        .completed_by(assignment_words);
const Argument ids_argument =
    required_list("ID", "numbers of the connections").completed_by(connection_words);

Answer run_connection_add(const Request& request) {
    const PasswordOptions password_options(request);
    const ConnectionType& type = require_type(request.text(type_argument));
    const std::vector<Assignment> assignments = parse_assignments(request.texts(values_argument));
    Record record = new_record(type);
    apply(assignments, type, record);
    require_usable(type, record);
    const StoredConnections connections(request.chatter());
    const std::vector<Assignment> passwords = collect_passwords(password_options, type);
    put(passwords, record);
    const ChangeLock lock;
    const unsigned id = connections.add(type, record);
    record.set_identity(id, type);
    return changed_answer(added, id, record,
                          advice_on(type, record, named_fields(assignments, passwords)));
}

Answer run_connection_set(const Request& request) {
    const PasswordOptions password_options(request);
    const unsigned id = require_id(request.text(id_argument));
    const ConnectionType& type = require_type_of_id(id);
    if (request.texts(changes_argument).empty() && !password_options.any()) {
        throw UsageError("nothing to change: give a FIELD=VALUE or a password.");
    }
    const std::vector<Assignment> assignments = parse_assignments(request.texts(changes_argument));
    Record trial;
    apply(assignments, type, trial);
    const StoredConnections connections(request.chatter());
    connections.record(id); // nobody should type a password for a connection that does not exist
    const std::vector<Assignment> passwords = collect_passwords(password_options, type);
    const ChangeLock lock;
    const Record before = connections.record(id);
    Record record = before;
    apply(assignments, type, record);
    put(passwords, record);
    record.set_identity(id, type);
    require_carried(record);
    require_usable(type, record);
    // A document that need not be written is not: other readers would take it for a change.
    if (record != before) connections.store(type, record);
    return changed_answer(record != before ? changed : unchanged, id, record,
                          advice_on(type, record, named_fields(assignments, passwords)));
}

Answer run_connection_remove(const Request& request) {
    std::vector<unsigned> ids;
    for (const std::string& word : request.texts(ids_argument)) {
        const unsigned id = require_id(word);
        if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
    }
    const StoredConnections connections(request.chatter());
    const ChangeLock lock;
    std::vector<Record> records;
    records.reserve(ids.size());
    for (const unsigned id : ids) records.push_back(connections.record(id));
    Answer answer;
    Json removed = json_list();
    for (std::size_t i = 0; i < ids.size(); ++i) {
        connections.remove(ids[i]);
        answer.text += fmt::format("Removed connection {}.\n", label_of(ids[i], records[i]));
        append(removed, Json(json_object_new_int64(ids[i])));
    }
    answer.json = json_map();
    add(answer.json, "removed", std::move(removed));
    return answer;
}

} // namespace

const Verb verbs::connection_add{
    .name = "add",
    .summary = "Add a connection",
    .description = "Adds a connection under the lowest free number of its type. It needs at "
                   "least a serverAddress. An RDP connection gets colorDepth=32 when no other "
                   "is given. Passwords are asked for or read from standard input, first the "
                   "user's, then the gateway's.",
    .examples =
        {"qvtcctl connection add rdp name=office serverAddress=10.0.0.5 username=anna --password",
         "qvtcctl connection add vnc name=lab serverAddress=10.0.0.7::5901",
         "qvtcctl connection add web name=intranet serverAddress=http://intranet/"},
    .arguments = {type_argument, values_argument, password_flag, password_stdin_flag,
                  gateway_password_flag, gateway_password_stdin_flag},
    .run = run_connection_add,
};

const Verb verbs::connection_set{
    .name = "set",
    .summary = "Change fields of a connection",
    .description = "Changes the fields that are named and leaves all others unchanged. An empty "
                   "value clears a field.",
    .examples = {"qvtcctl connection set 32 username=berta --password",
                 "qvtcctl connection set 32 domain= redirectAudio=on"},
    .arguments = {id_argument, changes_argument, password_flag, password_stdin_flag,
                  gateway_password_flag, gateway_password_stdin_flag},
    .run = run_connection_set,
};

const Verb verbs::connection_remove{
    .name = "remove",
    .summary = "Remove connections",
    .description = "Removes the connections with these numbers. When one of them does not "
                   "exist, none is removed.",
    .examples = {"qvtcctl connection remove 32", "qvtcctl connection remove 32 224 288"},
    .arguments = {ids_argument},
    .run = run_connection_remove,
};

} // namespace qvtc::qvtcctl
