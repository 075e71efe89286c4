#include "core/json.hpp"

#include "core/log.hpp"
#include "core/text.hpp"

namespace qvtc {

std::optional<std::string> json_plain_text(json_object* object, const char* key) {
    json_object* const member = json_object_object_get(object, key);
    if (member == nullptr) {
        log(Level::error, "getJsonValue error! key = %s\n", key);
        return std::nullopt;
    }
    const std::string text =
        std::string(json_object_to_json_string(member)).substr(0, json_plain_text_limit);
    // Once the backslashes are gone no escaped slash is left to be replaced.
    return remove_all(remove_all(text, '"'), '\\');
}

} // namespace qvtc
