#include "core/json.hpp"

#include <algorithm>
#include <new>

#include "core/log.hpp"
#include "core/text.hpp"

namespace qvtc {

namespace {

std::string without_marks(std::string json_text) {
    // Once the backslashes are gone no escaped slash is left to be replaced.
    return remove_all(remove_all(std::move(json_text), '"'), '\\');
}

/// Whether the JSON text of this string is nothing but its own bytes and marks,
/// and short enough to be taken whole: then it need not be composed.
bool is_simple(std::string_view text) {
    return text.size() < json_plain_text_limit / 2 &&
           std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; });
}

Json made(json_object* object) {
    if (object == nullptr) throw std::bad_alloc();
    return Json(object);
}

} // namespace

Json json_map() { return made(json_object_new_object()); }

Json json_list() { return made(json_object_new_array()); }

Json json_string(std::string_view text) {
    return made(json_object_new_string_len(text.data(), static_cast<int>(text.size())));
}

void add_member(const Json& map, const char* name, Json value) {
    if (json_object_object_add(map.get(), name, value.get()) != 0) throw std::bad_alloc();
    static_cast<void>(value.release());
}

void add_element(json_object* list, Json value) {
    if (json_object_array_add(list, value.get()) != 0) throw std::bad_alloc();
    static_cast<void>(value.release());
}

Json json_pair(const char* name, std::string_view text) {
    Json object = json_map();
    add_member(object, name, json_string(text));
    return object;
}

std::optional<std::string> json_plain_text(json_object* object, const char* key) {
    json_object* const member = json_object_object_get(object, key);
    if (member == nullptr) {
        log(Level::error, "getJsonValue error! key = %s\n", key);
        return std::nullopt;
    }
    if (json_object_is_type(member, json_type_string)) {
        const std::string_view own(json_object_get_string(member),
                                   static_cast<std::size_t>(json_object_get_string_len(member)));
        if (is_simple(own)) return without_marks(std::string(own));
    }
    const char* const text = json_object_to_json_string(member);
    if (text == nullptr) throw std::bad_alloc();
    return without_marks(std::string(text).substr(0, json_plain_text_limit));
}

} // namespace qvtc
