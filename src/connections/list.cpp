#include "connections/list.hpp"

#include <cstdio>
#include <json-c/linkhash.h>
#include <new>

#include "connections/record.hpp"
#include "core/log.hpp"
#include "core/params.hpp"
#include "core/text.hpp"
#include "store/document.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::connections {

namespace {

constexpr int lookup_attempts = 32;
constexpr std::size_t item_name_limit = 127;
constexpr std::size_t listed_value_limit = 127;
constexpr std::size_t delay_limit = 71;

/// The object that a parameter string describes; null, and an error in the log,
/// when it describes none.
Json parsed_params(const std::string& params) {
    // One more backslash would escape what follows it in the JSON text; four
    // come back as none, like every backslash of a value.
    std::string text = replace_all(params, "\\", "\\\\\\\\");
    // A quote in a value would end the value and begin members of its own.
    const std::string json = contains(text, "\"") ? "" : params_to_json(text.data());
    Json object = parse_json(json);
    // When memory runs out, json-c leaves a member out without a word.
    if (json_object_equal(object.get(), parse_json(json).get()) == 0) throw std::bad_alloc();
    if (object == nullptr) {
        // Not the text itself: there may be a password in it.
        log(Level::error, "@setconnections not a parameter string (%zu bytes)", params.size());
    }
    return object;
}

/// The id that a new record gets, with the trace that this search prints.
std::optional<ConnectionId> traced_free_id(const store::Document& document, const Type& type) {
    const FreeIdSearch search = find_free_id(document, type);
    for (std::size_t i = 0; i < search.taken.size(); ++i) {
        std::printf("id_list[%zu]=%s, k=%u\n", i, search.taken[i].text.c_str(), search.taken[i].in);
    }
    const std::vector<int> numbers = search.numbers();
    for (std::size_t i = 0; i < numbers.size(); ++i) std::printf("ids[%zu]=%d\n", i, numbers[i]);
    if (!search.free) log(Level::info, "@getfreeid not found free id");
    return search.free;
}

/// The id under which a record is to be stored: the one it asks for, which may
/// lie outside its type's block, or a free one.
std::optional<std::string> id_to_store(const store::Document& document, const Type& type,
                                       const std::string& asked) {
    if (!asked.empty() && asked != "\"\"") return cut(asked, field_limit);
    const auto free = traced_free_id(document, type);
    if (!free) log(Level::error, "@setconnections not free id");
    return free ? std::optional(std::to_string(*free)) : std::nullopt;
}

/// Deliberate: a record that is not at its place is looked for 31 times more,
/// each time under a name that has grown by the id.
std::optional<std::string> find_item(const store::Document& document, const Type& type,
                                     const std::string& id) {
    std::string item = item_name(type.prefix, id);
    for (int attempt = 0; attempt < lookup_attempts && item.size() <= item_name_limit; ++attempt) {
        if (document.get(item, name_of(Field::id)) == id) return item;
        item += "_id_" + id;
    }
    return std::nullopt;
}

std::string record_text(const Record& record) {
    std::string text = "{ ";
    for (std::size_t i = 0; i < field_count; ++i) {
        if (i > 0) text += ", ";
        text += textf("\"%s\" : \"%s\"", field_names[i], record.values[i].c_str());
    }
    return text + "}";
}

Json record_object(const Record& record) {
    Json object = json_map();
    // Room for all fields at once: the table would grow, and hash anew, thrice.
    const int room =
        lh_table_resize(json_object_get_object(object.get()), 2 * static_cast<int>(field_count));
    if (room != 0) throw std::bad_alloc();
    constexpr unsigned fresh_constant_key =
        JSON_C_OBJECT_ADD_KEY_IS_NEW | JSON_C_OBJECT_ADD_CONSTANT_KEY;
    for (std::size_t i = 0; i < field_count; ++i) {
        Json value = json_string(record.values[i]);
        if (json_object_object_add_ex(object.get(), field_names[i], value.get(),
                                      fresh_constant_key) != 0)
            throw std::bad_alloc();
        static_cast<void>(value.release());
    }
    return object;
}

} // namespace

std::optional<Type> known_type(std::uint32_t number) {
    const char* const prefix = prefix_of(number);
    if (prefix == nullptr) {
        std::printf("@%s:: not such connection type : %d\n", "getConnectItemName",
                    static_cast<int>(number));
        return std::nullopt;
    }
    return Type{number, prefix};
}

std::optional<ConnectionId> free_id(std::uint32_t type) {
    const auto known = known_type(type);
    return known ? traced_free_id(store::Document::load(), *known) : std::nullopt;
}

bool store_connection(std::uint32_t type, const std::string& params) {
    const auto known = known_type(type);
    if (!known) {
        log(Level::error, "@setconnections not such connection type : %d", static_cast<int>(type));
        return false;
    }
    const Json described = parsed_params(params);
    if (described == nullptr) return false;
    const std::string asked_id = json_plain_text(described.get(), name_of(Field::id)).value_or("");
    bool stored = false;
    const bool locked = store::change_document([&](store::Document& document) {
        const auto id = id_to_store(document, *known, asked_id);
        if (!id) return false;
        // Only now, since it logs each field that is missing.
        Record record = record_from_json(described.get());
        record[Field::id] = *id;
        return stored = write_record(document, item_name(known->prefix, *id), record);
    });
    return locked && stored;
}

Json connection(std::uint32_t type, ConnectionId id) {
    const auto known = known_type(type);
    const store::Document document = store::Document::load();
    const auto item = known ? find_item(document, *known, std::to_string(id)) : std::nullopt;
    const std::string text =
        item ? record_text(read_record(document, *item, listed_value_limit)) : "{ }";
    Json object = parse_json(text);
    if (object == nullptr) {
        log(Level::error, "connects param:\n %s\n", text.c_str());
        log(Level::error, "@getconnections jobj_list error\n");
    }
    return object;
}

Json connections_of(std::uint32_t type) {
    Json list = json_map();
    add_member(list, "list", json_list());
    json_object* const records = json_object_object_get(list.get(), "list");
    const auto known = known_type(type);
    if (!known) return list;
    const store::Document document = store::Document::load();
    const ConnectionId base = type * ids_per_type;
    for (ConnectionId id = base; id < base + ids_per_type; ++id) {
        const std::string item = item_name(known->prefix, id);
        if (!document.get(item, name_of(Field::id))) continue;
        add_element(records, record_object(read_record(document, item, listed_value_limit)));
    }
    return list;
}

bool delete_connection(std::uint32_t type, std::uint32_t slot) {
    const auto known = known_type(type);
    if (!known) return false;
    const std::string item = item_name(known->prefix, type * ids_per_type + slot);
    store::change_document([&](store::Document& document) { return document.remove_item(item); });
    log(Level::info, "@delconnection type = %d, id = %d, item_name=%s", static_cast<int>(type),
        static_cast<int>(slot), item.c_str());
    return true;
}

Json connect_delay() {
    const std::string delay = cut(store::setting(store::keys::connect_delay), delay_limit);
    if (delay.empty()) return nullptr;
    return json_pair("delay", delay);
}

void store_connect_delay(const std::string& params) {
    const std::string value = single_pair_value(params);
    if (!value.empty()) store::store_setting(store::keys::connect_delay, value);
}

} // namespace qvtc::connections
