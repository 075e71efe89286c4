#include "qvtcctl/json.hpp"

namespace qvtc::qvtcctl {

Json json_map() { return Json(json_object_new_object()); }

Json json_list() { return Json(json_object_new_array()); }

Json json_text(std::string_view text) {
    return Json(json_object_new_string_len(text.data(), static_cast<int>(text.size())));
}

void add(const Json& map, const char* key, Json value) {
    json_object_object_add(map.get(), key, value.release());
}

void add(const Json& map, const char* key, std::string_view text) {
    add(map, key, json_text(text));
}

void add(const Json& map, const char* key, const char* text) { add(map, key, json_text(text)); }

void add_number(const Json& map, const char* key, long number) {
    add(map, key, Json(json_object_new_int64(number)));
}

void add_flag(const Json& map, const char* key, bool flag) {
    add(map, key, Json(json_object_new_boolean(flag ? 1 : 0)));
}

void append(const Json& list, Json value) { json_object_array_add(list.get(), value.release()); }

std::string text_member(json_object* map, const char* key) {
    json_object* member = nullptr;
    if (json_object_object_get_ex(map, key, &member) == 0 || member == nullptr) return "";
    return json_object_get_string(member);
}

std::string to_text(const Json& value) {
    constexpr int layout =
        JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE;
    return std::string(json_object_to_json_string_ext(value.get(), layout)) + "\n";
}

std::string to_line(const Json& value) {
    constexpr int layout = JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE;
    return std::string(json_object_to_json_string_ext(value.get(), layout)) + "\n";
}

} // namespace qvtc::qvtcctl
