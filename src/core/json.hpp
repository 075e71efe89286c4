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
///
/// When memory runs out, json-c up to 0.16 leaves out a value; and it looks for a member by
/// a name that it could not copy, which ends the process. Nothing of ours can prevent that:
/// what the library itself has to say of single values is built with the functions below.
inline Json parse_json(const std::string& text) { return Json(json_tokener_parse(text.c_str())); }

// These throw std::bad_alloc when memory runs out: json-c ends the process when it
// is given no object, and leaves out a member without a word.
Json json_map();
Json json_list();
Json json_string(std::string_view text);
void add_member(const Json& map, const char* name, Json value);
void add_element(json_object* list, Json value);
/// An object of one member, a text.
Json json_pair(const char* name, std::string_view text);

/// Most bytes that json_plain_text gives.
inline constexpr std::size_t json_plain_text_limit = 1023;

/// A member's JSON text without its double quotes and backslashes: a string's
/// own text, a number's digits. Nothing, and an error in the log, when there is
/// no such member (or no object).
std::optional<std::string> json_plain_text(json_object* object, const char* key);

} // namespace qvtc
