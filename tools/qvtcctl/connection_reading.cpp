#include "qvtcctl/connection_verbs.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/presentation.hpp"
#include "qvtcctl/settings_document.hpp"
#include "qvtcctl/table.hpp"

#include <memory>

#include <CLI/CLI.hpp>
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

} // namespace

Run define_list(CLI::App& app) {
    struct Options {
        std::string type;
        bool show_passwords = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("TYPE", options->type, "only connections of this type");
    app.add_flag("--show-passwords", options->show_passwords, "show passwords in clear text");
    return [options](const Context& context) {
        const ConnectionType* type = options->type.empty() ? nullptr : &require_type(options->type);
        const Device device(context.chatter());
        const auto passwords = options->show_passwords ? Passwords::readable : Passwords::hidden;
        const std::vector<Record> records =
            type == nullptr ? device.records() : device.records(*type);
        Answer answer;
        answer.text = records.empty() ? none_text(type) : list_text(records, passwords);
        answer.json = list_json(records, passwords);
        return answer;
    };
}

Run define_show(CLI::App& app) {
    struct Options {
        std::string id;
        bool all = false;
        bool show_passwords = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_flag("--all", options->all, "show empty fields too");
    app.add_flag("--show-passwords", options->show_passwords, "show passwords in clear text");
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        const Record record = Device(context.chatter()).record(id);
        const auto passwords = options->show_passwords ? Passwords::readable : Passwords::hidden;
        Answer answer;
        answer.text = record_text(record, passwords, options->all);
        answer.json = record_json(record, passwords, true);
        return answer;
    };
}

Run define_fields(CLI::App& app) {
    auto type_name = std::make_shared<std::string>();
    app.add_option("TYPE", *type_name, "only fields that this type's client gets");
    return [type_name](const Context&) {
        const ConnectionType* type = type_name->empty() ? nullptr : &require_type(*type_name);
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
    };
}

Run define_types(CLI::App&) {
    return [](const Context&) {
        std::vector<Row> rows{{"NUMBER", "TYPE", "IDS", "CLIENT"}};
        Json list = json_list();
        for (const ConnectionType& type : connection_types) {
            rows.push_back({std::to_string(type.number), std::string(type.name),
                            fmt::format("{}-{}", first_id(type), last_id(type)),
                            can_be_launched(type) ? std::string(type.process)
                                                  : "started by the front-end only"});
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
    };
}

} // namespace qvtc::qvtcctl
