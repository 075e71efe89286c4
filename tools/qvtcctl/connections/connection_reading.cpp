#include "qvtcctl/base/table.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/verb/settings_document.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::string none_text(const ConnectionType* type) {
    const std::string kind = type == nullptr ? "" : fmt::format("{} ", type->title);
    const bool damaged = fault_in_settings_document().has_value();
    return fmt::format("No {}connections {}.\n", kind, damaged ? "can be read" : "are stored");
}

std::string values_of(const Field& field) {
    if (field.kind != Kind::choice) return std::string(describe(field.kind));
    std::string choices(field.choices);
    for (std::size_t at = 0; (at = choices.find('|', at)) != std::string::npos;) {
        choices.replace(at, 1, ", ");
    }
    return choices;
}

std::string users_of(const Field& field) {
    if (field.used_by == field_sets::any) return "all";
    std::string names;
    for (const ConnectionType& type : connection_types) {
        if (!contains(field.used_by, type)) continue;
        names += fmt::format("{}{}", names.empty() ? "" : " ", type.name);
    }
    return names.empty() ? "-" : names;
}

const Argument show_passwords_flag = flag("--show-passwords", "show passwords in clear text");
const Argument all_flag = flag("--all", "show empty fields too");
const Argument fields_type_argument =
    optional_argument("TYPE", "only fields that this type's client gets").completed_by(type_words);

Answer run_connection_list(const Request& request) {
    const ConnectionType* type = request.text(only_type_argument).empty()
                                     ? nullptr
                                     : &require_type(request.text(only_type_argument));
    const StoredConnections connections(request.chatter());
    const auto passwords =
        request.has(show_passwords_flag) ? Passwords::readable : Passwords::hidden;
    const std::vector<Record> records =
        type == nullptr ? connections.records() : connections.records(*type);
    Answer answer;
    answer.text = records.empty() ? none_text(type) : list_text(records, passwords);
    answer.json = list_json(records, passwords);
    return answer;
}

Answer run_connection_show(const Request& request) {
    const unsigned id = require_id(request.text(id_argument));
    const Record record = StoredConnections(request.chatter()).record(id);
    const auto passwords =
        request.has(show_passwords_flag) ? Passwords::readable : Passwords::hidden;
    Answer answer;
    answer.text = record_text(record, passwords, request.has(all_flag));
    answer.json = record_json(record, passwords, true);
    return answer;
}

Answer run_connection_fields(const Request& request) {
    const ConnectionType* type = request.text(fields_type_argument).empty()
                                     ? nullptr
                                     : &require_type(request.text(fields_type_argument));
    std::vector<Row> rows{{"FIELD", "VALUES", "USED BY", "MEANING"}};
    Json list = json_list();
    for (const Field& field : fields) {
        if (type != nullptr && !contains(field.used_by, *type)) continue;
        rows.push_back({std::string(field.name), values_of(field), users_of(field),
                        std::string(field.meaning)});
        Json row = json_map();
        add(row, "field", field.name);
        add(row, "values", values_of(field));
        add(row, "usedBy", users_of(field));
        add(row, "meaning", field.meaning);
        append(list, std::move(row));
    }
    Answer answer;
    answer.text = layout(rows);
    answer.json = json_map();
    add(answer.json, "fields", std::move(list));
    return answer;
}

Answer run_connection_types(const Request&) {
    std::vector<Row> rows{{"NUMBER", "TYPE", "IDS", "CLIENT"}};
    Json list = json_list();
    for (const ConnectionType& type : connection_types) {
        rows.push_back(
            {std::to_string(type.number), std::string(type.name),
             fmt::format("{}-{}", first_id(type), last_id(type)),
             can_be_launched(type) ? std::string(type.process) : "started by the front-end only"});
        Json row = json_map();
        add_number(row, "number", type.number);
        add(row, "type", type.name);
        add_number(row, "firstId", first_id(type));
        add_number(row, "lastId", last_id(type));
        add_flag(row, "launch", can_be_launched(type));
        append(list, std::move(row));
    }
    Answer answer;
    answer.text = layout(rows);
    answer.json = json_map();
    add(answer.json, "types", std::move(list));
    return answer;
}

} // namespace

const Verb verbs::connection_list{
    .name = "list",
    .summary = "List the stored connections",
    .description = "Lists the stored connections, all of them or those of one type.",
    .examples = {"qvtcctl connection list", "qvtcctl connection list rdp --json"},
    .arguments = {only_type_argument, show_passwords_flag},
    .run = run_connection_list,
};

const Verb verbs::connection_show{
    .name = "show",
    .summary = "Show one connection",
    .description = "Shows the fields of one connection that are set, with their meaning.",
    .examples = {"qvtcctl connection show 32", "qvtcctl connection show 32 --all --show-passwords"},
    .arguments = {id_argument, all_flag, show_passwords_flag},
    .run = run_connection_show,
};

const Verb verbs::connection_fields{
    .name = "fields",
    .summary = "List the fields of a connection",
    .description = "Lists the fields that a connection has, their values, and which clients get "
                   "them. Every connection has all fields; a client ignores those that are not "
                   "for it.",
    .examples = {"qvtcctl connection fields", "qvtcctl connection fields spice"},
    .arguments = {fields_type_argument},
    .settings = Settings::not_needed,
    .run = run_connection_fields,
};

const Verb verbs::connection_types{
    .name = "types",
    .summary = "List the types of connections",
    .description = "Lists the types of connections, the numbers that connections of each type "
                   "have, and the clients that \"launch\" starts.",
    .examples = {"qvtcctl connection types"},
    .settings = Settings::not_needed,
    .run = run_connection_types,
};

} // namespace qvtc::qvtcctl
