#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <json-c/json.h>

namespace qvtc::qvtcctl {

struct JsonRelease {
    void operator()(json_object* object) const { json_object_put(object); }
};

/// Owns one json-c object.
using Json = std::unique_ptr<json_object, JsonRelease>;

Json json_map();
Json json_list();
Json json_text(std::string_view text);

/// Members in the order in which they are added. A null value adds JSON's null.
void add(const Json& map, const char* key, Json value);
void add(const Json& map, const char* key, std::string_view text);
void add(const Json& map, const char* key, const char* text);
void add_number(const Json& map, const char* key, long number);
void add_flag(const Json& map, const char* key, bool flag);
void append(const Json& list, Json value);

/// The member's text; empty when there is none.
std::string text_member(json_object* map, const char* key);

/// Laid out for reading, ending in a newline. Always valid UTF-8, without characters that a tty
/// acts upon.
std::string to_text(const Json& value);

/// The same on one line, ending in a newline.
std::string to_line(const Json& value);

} // namespace qvtc::qvtcctl
