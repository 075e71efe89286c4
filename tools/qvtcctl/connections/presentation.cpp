#include "qvtcctl/connections/presentation.hpp"

#include "qvtcctl/base/hexadecimal.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/connections/password.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t id_field = field_index("id");
constexpr std::size_t type_field = field_index("type");

/// A connection's type; the block of its id decides, as it does for the library.
const ConnectionType* type_of(const Record& record) {
    const std::optional<unsigned> id = record.id();
    return id ? type_of_id(*id) : find_type(record[type_field]);
}

std::string shown_password(const Record& record, std::size_t field, Passwords passwords) {
    if (passwords == Passwords::stored) return record[field];
    if (passwords == Passwords::hidden) return "(set)";
    const ConnectionType* type = type_of(record);
    return (type == nullptr ? std::nullopt : readable_password(*type, record[field]))
        .value_or("(set, but not readable)");
}

std::string with_decoded_text(const Record& record, std::size_t field, Passwords passwords) {
    std::string value = shown_value(record, field, passwords);
    if (fields[field].kind != Kind::hex || value.empty()) return value;
    const std::optional<std::string> text = text_of_hexadecimal(value);
    return text ? fmt::format("{} (\"{}\")", value, *text) : value;
}

} // namespace

std::string shown_value(const Record& record, std::size_t field, Passwords passwords) {
    const std::string& value = record[field];
    if (value.empty()) return "";
    if (fields[field].kind == Kind::password) return shown_password(record, field, passwords);
    const ConnectionType* type = field == type_field ? type_of(record) : nullptr;
    return type == nullptr ? value : std::string(type->name);
}

std::string list_text(const std::vector<Record>& records, Passwords passwords) {
    constexpr std::array columns{id_field,
                                 type_field,
                                 field_index("name"),
                                 field_index("serverAddress"),
                                 field_index("username"),
                                 field_index("password")};
    std::vector<Row> rows{{"ID", "TYPE", "NAME", "ADDRESS", "USER", "PASSWORD"}};
    for (const Record& record : records) {
        Row row;
        for (const std::size_t column : columns) {
            const std::string value = shown_value(record, column, passwords);
            row.push_back(value.empty() ? "-" : value);
        }
        rows.push_back(row);
    }
    return layout(rows);
}

std::string record_text(const Record& record, Passwords passwords, bool all_fields) {
    std::vector<Row> rows{{"FIELD", "VALUE", "MEANING"}};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string value = with_decoded_text(record, i, passwords);
        if (value.empty() && !all_fields) continue;
        rows.push_back({std::string(fields[i].name), value.empty() ? "-" : value,
                        std::string(fields[i].meaning)});
    }
    return layout(rows);
}

Json record_json(const Record& record, Passwords passwords, bool all_fields) {
    Json map = json_map();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string value = shown_value(record, i, passwords);
        if (value.empty() && !all_fields) continue;
        const std::string name(fields[i].name);
        const std::optional<unsigned> id = i == id_field ? record.id() : std::nullopt;
        if (id) {
            add_number(map, name.c_str(), *id);
        } else {
            add(map, name.c_str(), value);
        }
    }
    return map;
}

Json list_json(const std::vector<Record>& records, Passwords passwords) {
    Json list = json_list();
    for (const Record& record : records) append(list, record_json(record, passwords, true));
    Json map = json_map();
    add(map, "connections", std::move(list));
    return map;
}

} // namespace qvtc::qvtcctl
