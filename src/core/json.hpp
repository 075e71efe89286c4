#pragma once

#include <cstddef>
#include <json-c/json.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qvtc {

struct JsonRelease {
    void operator()(json_object* object) const { json_object_put(object); }
};
/// Owner of one reference to a json-c object.
using Json = std::unique_ptr<json_object, JsonRelease>;

/// Null for a text that json-c refuses. Texts in single quotes are accepted.
inline Json parse_json(const std::string& text) { return Json(json_tokener_parse(text.c_str())); }

inline json_object* json_string(std::string_view text) {
    return json_object_new_string_len(text.data(), static_cast<int>(text.size()));
}

/// Most bytes that json_plain_text gives.
inline constexpr std::size_t json_plain_text_limit = 1023;

/// A member's JSON text without its double quotes and backslashes: a string's
/// own text, a number's digits. Nothing, and an error in the log, when there is
/// no such member (or no object).
std::optional<std::string> json_plain_text(json_object* object, const char* key);

} // namespace qvtc
