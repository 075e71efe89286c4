#include "qvtcctl/connections/transfer.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/advice.hpp"

#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* format_key = "format";
constexpr const char* version_key = "version";
constexpr const char* list_key = "connections";
constexpr const char* passwords_key = "passwords";
constexpr std::string_view format_name = "qvtcctl-connections";
constexpr int format_version = 1;

constexpr std::size_t id_field = field_index("id");
constexpr std::size_t type_field = field_index("type");

[[noreturn]] void refuse(const std::string& message) {
    throw Refusal(ExitCode::bad_usage, message);
}

/// The last character of the comment that begins there, or of the text; the parser skips comments.
std::size_t end_of_comment(std::string_view text, std::size_t at) {
    const bool block = text[at + 1] == '*';
    const std::size_t end = text.find(block ? "*/" : "\n", at + 2);
    return end == std::string_view::npos ? text.size() - 1 : end + (block ? 1 : 0);
}

/// Objects and lists in the text: each costs the parser most of a kilobyte, however short it is.
std::size_t containers_in(std::string_view text) {
    std::size_t count = 0;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            if (c == '\\') ++i;
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (text.substr(i).starts_with("/*") || text.substr(i).starts_with("//")) {
            i = end_of_comment(text, i);
        } else if (c == '{' || c == '[') {
            ++count;
        }
    }
    return count;
}

Json parse_json(std::string_view text) {
    constexpr std::size_t most = connection_types.size() * QVTC_IDS_PER_TYPE;
    if (containers_in(text) > most + 2) // the document and its list
        refuse(fmt::format("too many objects: a terminal keeps at most {} connections.", most));
    json_tokener* tokener = json_tokener_new();
    Json parsed(json_tokener_parse_ex(tokener, text.data(), static_cast<int>(text.size())));
    const json_tokener_error error = json_tokener_get_error(tokener);
    const std::size_t end = json_tokener_get_parse_end(tokener);
    json_tokener_free(tokener);
    if (error == json_tokener_continue) {
        refuse(is_blank(text) ? "the input is empty." : "not valid JSON: it ends too early.");
    }
    if (error != json_tokener_success) {
        const auto line =
            std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n') + 1;
        refuse(fmt::format("not valid JSON: {} in line {}.", json_tokener_error_desc(error), line));
    }
    if (!is_blank(text.substr(end))) refuse("not valid JSON: there is more text after its end.");
    return parsed;
}

json_object* require_list(const Json& document) {
    json_object* list = nullptr;
    json_object* version = nullptr;
    const bool is_ours = json_object_is_type(document.get(), json_type_object) != 0 &&
                         text_member(document.get(), format_key) == format_name &&
                         json_object_object_get_ex(document.get(), list_key, &list) != 0 &&
                         json_object_is_type(list, json_type_array) != 0;
    if (!is_ours) {
        refuse("this was not written by \"qvtcctl connection export\".");
    }
    json_object_object_get_ex(document.get(), version_key, &version);
    if (json_object_get_int(version) != format_version) {
        refuse(fmt::format("the text has version {}, and this program reads version {}.",
                           text_member(document.get(), version_key), format_version));
    }
    return list;
}

/// One member as text: JSON numbers are taken as their digits.
std::string value_of(json_object* member, const std::string& field) {
    if (json_object_is_type(member, json_type_string) == 0 &&
        json_object_is_type(member, json_type_int) == 0) {
        refuse(fmt::format("{} must be a text or a whole number.", field));
    }
    const char* text = json_object_get_string(member);
    const bool is_text = json_object_is_type(member, json_type_string) != 0;
    // A text may hold a NUL, which is to be refused and not to end it.
    return is_text ? std::string(text, static_cast<std::size_t>(json_object_get_string_len(member)))
                   : std::string(text);
}

const ConnectionType& type_in(json_object* map) {
    const std::string type = text_member(map, "type");
    if (type.empty()) refuse("it has no type.");
    return require_type(type);
}

void require_id_of(const ConnectionType& type, const std::string& text) {
    const std::optional<unsigned> id = parse_number(text);
    if (id && first_id(type) <= *id && *id <= last_id(type)) return;
    refuse(fmt::format("id \"{}\" does not belong to the type {}, whose ids are {} to {}.",
                       printable(text), type.name, first_id(type), last_id(type)));
}

Incoming parse_connection(json_object* map, Strictness strictness) {
    if (json_object_is_type(map, json_type_object) == 0) refuse("it is not a JSON object.");
    const ConnectionType& type = type_in(map);
    Record record = strictness == Strictness::whole ? new_record(type) : Record();
    json_object_iterator member = json_object_iter_begin(map);
    const json_object_iterator end = json_object_iter_end(map);
    for (; json_object_iter_equal(&member, &end) == 0; json_object_iter_next(&member)) {
        const std::string key = json_object_iter_peek_name(&member);
        const std::size_t field = require_field(key);
        if (field == type_field) continue;
        record[field] = value_of(json_object_iter_peek_value(&member), key);
        if (field == id_field) {
            require_id_of(type, record[field]);
        } else {
            require_value(fields[field], type, record[field], strictness);
        }
    }
    record.set_identity(record.id(), type);
    if (strictness == Strictness::whole) require_usable(type, record);
    return {&type, std::move(record)};
}

/// Whether the text was written without the passwords that its connections have.
bool leaves_passwords_out(const Json& document) {
    json_object* passwords = nullptr;
    return json_object_object_get_ex(document.get(), passwords_key, &passwords) != 0 &&
           json_object_is_type(passwords, json_type_boolean) != 0 &&
           json_object_get_boolean(passwords) == 0;
}

/// The record with the passwords of the stored one that it would replace, where it has none.
Record with_passwords_of(Record record, const Record& stored) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].kind == Kind::password && record[i].empty()) record[i] = stored[i];
    }
    return record;
}

void require_different_ids(const std::vector<Incoming>& incoming) {
    std::set<unsigned> seen;
    for (const Incoming& connection : incoming) {
        const std::optional<unsigned> id = connection.record.id();
        if (id && !seen.insert(*id).second) refuse(fmt::format("id {} is given twice.", *id));
    }
}

/// Deals out ids of all types.
class FreeIds {
  public:
    void take(unsigned id) { taken_.insert(id); }
    bool is_free(unsigned id) const { return !taken_.contains(id); }
    std::optional<unsigned> lowest(const ConnectionType& type) const {
        for (unsigned id = first_id(type); id <= last_id(type); ++id) {
            if (is_free(id)) return id;
        }
        return std::nullopt;
    }

  private:
    std::set<unsigned> taken_;
};

using StoredById = std::map<unsigned, const Record*>;

/// A step for a connection that can have the id that it wishes; nothing for any other.
std::optional<ImportStep> step_with_own_id(const Incoming& connection, const StoredById& stored,
                                           bool replace) {
    const std::optional<unsigned> id = connection.record.id();
    if (!id) return std::nullopt;
    ImportStep step{Action::add, *id, std::nullopt, connection.type, connection.record, {}};
    const auto found = stored.find(*id);
    if (found == stored.end()) return step;
    step.previous = *found->second;
    if (connection.passwords_left_out)
        step.record = with_passwords_of(std::move(step.record), *found->second);
    if (*found->second == step.record) {
        step.action = Action::keep;
        return step;
    }
    step.action = Action::replace;
    return replace ? std::optional(step) : std::nullopt;
}

ImportStep step_with_new_id(const Incoming& connection, FreeIds& ids) {
    const std::optional<unsigned> id = ids.lowest(*connection.type);
    if (!id) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("there is no room for all {} connections: a terminal keeps {}.",
                                  connection.type->title, QVTC_IDS_PER_TYPE));
    }
    ids.take(*id);
    ImportStep step{Action::add,       *id, connection.record.id(), connection.type,
                    connection.record, {}};
    step.record.set_identity(id, *connection.type);
    return step;
}

} // namespace

std::string exported_text(const std::vector<Record>& records, bool with_passwords) {
    Json list = json_list();
    for (Record record : records) {
        for (std::size_t i = 0; i < fields.size() && !with_passwords; ++i) {
            if (fields[i].kind == Kind::password) record[i].clear();
        }
        append(list, record_json(record, Passwords::stored, false));
    }
    Json document = json_map();
    add(document, format_key, format_name);
    add_number(document, version_key, format_version);
    if (!with_passwords) add_flag(document, passwords_key, false);
    add(document, list_key, std::move(list));
    return to_text(document);
}

std::vector<Incoming> parse_import(std::string_view text, Strictness strictness) {
    const Json document = parse_json(text);
    json_object* list = require_list(document);
    const bool passwords_left_out = leaves_passwords_out(document);
    std::vector<Incoming> incoming;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        json_object* connection = json_object_array_get_idx(list, i);
        try {
            incoming.push_back(parse_connection(connection, strictness));
            incoming.back().passwords_left_out = passwords_left_out;
        } catch (const Refusal& refusal) {
            const std::string name = text_member(connection, "name");
            throw Refusal(refusal.code(),
                          fmt::format("connection {}{} of the file: {}", i + 1,
                                      name.empty() ? "" : fmt::format(" ({})", printable(name)),
                                      refusal.what()));
        }
    }
    require_different_ids(incoming);
    return incoming;
}

std::vector<ImportStep> plan_import(const std::vector<Record>& stored,
                                    std::vector<Incoming> incoming, bool replace) {
    StoredById by_id;
    FreeIds ids;
    for (const Record& record : stored) {
        const std::optional<unsigned> id = record.id();
        if (!id) continue;
        by_id.emplace(*id, &record);
        ids.take(*id);
    }
    // First those with an id of their own: a new id must not take the place of one of these.
    std::vector<std::optional<ImportStep>> planned;
    for (const Incoming& connection : incoming) {
        planned.push_back(step_with_own_id(connection, by_id, replace));
        if (planned.back()) ids.take(planned.back()->id);
    }
    std::vector<ImportStep> steps;
    for (std::size_t i = 0; i < incoming.size(); ++i) {
        steps.push_back(planned[i] ? *planned[i] : step_with_new_id(incoming[i], ids));
    }
    return steps;
}

} // namespace qvtc::qvtcctl
