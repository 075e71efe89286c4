#include "qvtcctl/base/json.hpp"

#include "qvtcctl/base/text.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::string escape_of(char32_t code) {
    if (code < 0x10000) return fmt::format("\\u{:04x}", static_cast<unsigned>(code));
    const auto above = static_cast<unsigned>(code) - 0x10000U;
    return fmt::format("\\u{:04x}\\u{:04x}", 0xD800U + (above >> 10U), 0xDC00U + (above & 0x3FFU));
}

/// JSON text as json-c writes it, made UTF-8 that is safe to show. Characters that a tty acts upon,
/// or that hide, are escaped, which keeps the value; bytes that are not UTF-8, such as another
/// network's name may have, become U+FFFD. All of these stand within texts only.
std::string made_safe(std::string_view json) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string result;
    while (!json.empty()) {
        const std::optional<Utf8Character> next = first_character(json);
        const std::size_t bytes = next ? next->bytes : 1;
        if (!next) {
            result += replacement;
        } else if (next->code >= 0x7F && (is_control(next->code) || is_invisible(next->code))) {
            result += escape_of(next->code);
        } else {
            result += json.substr(0, bytes);
        }
        json.remove_prefix(bytes);
    }
    return result;
}

std::string written(const Json& value, int layout) {
    return made_safe(json_object_to_json_string_ext(value.get(), layout)) + "\n";
}

} // namespace

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
    return written(value, JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED |
                              JSON_C_TO_STRING_NOSLASHESCAPE);
}

std::string to_line(const Json& value) {
    return written(value, JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE);
}

} // namespace qvtc::qvtcctl
