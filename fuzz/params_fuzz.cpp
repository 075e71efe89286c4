// Parameter strings: the table against the same walk over memory without an end, and the JSON
// text against json-c.

#include <json-c/json.h>
#include <memory>
#include <string>
#include <vector>

#include "core/json.hpp"
#include "core/params.hpp"
#include "fuzzing.hpp"

using namespace qvtc;
using fuzz::require;

namespace {

/// The table as it would be if it had no end.
struct Endless {
    explicit Endless(std::string_view text)
        : bytes((text.size() + 2) * ParamTable::entry_size + text.size() + 1, '\0') {
        std::size_t entry = 0;
        std::size_t position = 0;
        bool in_value = false;
        for (const char c : text) {
            if (c == '=') {
                in_value = true;
                position = 0;
                ++equal_signs;
            } else if (c == '&') {
                in_value = false;
                position = 0;
                ++entry;
            } else {
                bytes[entry * ParamTable::entry_size + (in_value ? ParamTable::name_size : 0) +
                      position++] = c;
            }
        }
        // What lies beyond the table's end does not count, nor its last byte.
        for (std::size_t at = ParamTable::table_size - 1; at < bytes.size(); ++at) bytes[at] = '\0';
    }

    std::string find(std::string_view name) const {
        for (std::size_t i = 0; i < equal_signs && i < ParamTable::entry_count; ++i) {
            const std::string stored = bytes.data() + i * ParamTable::entry_size;
            const std::string value =
                bytes.data() + i * ParamTable::entry_size + ParamTable::name_size;
            if (!stored.empty() && !value.empty() && stored == name) return value;
        }
        return {};
    }

    std::vector<char> bytes;
    std::size_t equal_signs = 0;
};

std::vector<std::string> split(std::string_view text, std::string_view delimiters) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find_first_of(delimiters);
        parts.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

void check_table(std::string_view text) {
    const auto table = std::make_unique<ParamTable>();
    table->parse(text);
    const Endless endless(text);
    std::vector<std::string> names = split(text, "&=");
    // Names as they come to be when they run on.
    for (std::size_t i = 0; i < ParamTable::entry_count; ++i) {
        if (endless.bytes.size() > (i + 1) * ParamTable::entry_size)
            names.emplace_back(endless.bytes.data() + i * ParamTable::entry_size);
    }
    for (const std::string& name : names) {
        const char* const value = table->find(name);
        const std::string expected = text.empty() ? "" : endless.find(name);
        require((value != nullptr ? std::string(value) : "") == expected, "value of a name");
    }
}

void check_json(std::string_view text) {
    std::string cut_up(text);
    const std::string json = params_to_json(cut_up.data());
    require(json.starts_with("{\"") && json.ends_with("\"}"), "braces and quotes");
    require(json.find_first_of("&=") == std::string::npos, "no separator is left");
    // Where each pair is a name and a value that need no escapes, json-c must see just them.
    if (text.find_first_of("\"\\") != std::string_view::npos) return;
    for (const char c : text) {
        if (c < ' ' || c > '~') return;
    }
    for (const std::string& pair : split(text, "&")) {
        const auto parts = split(pair, "=");
        if (parts.size() != 2 || parts[0].empty()) return;
    }
    const Json object = parse_json(json);
    require(object != nullptr, "pairs make an object");
    const auto pairs = split(text, "&");
    for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair) {
        const auto parts = split(*pair, "=");
        json_object* member = nullptr;
        if (!json_object_object_get_ex(object.get(), parts[0].c_str(), &member)) continue;
        require(parts[1] == json_object_get_string(member), "member");
        json_object_object_del(object.get(), parts[0].c_str()); // an earlier one of the name lost
    }
    require(json_object_object_length(object.get()) == 0, "no other members");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::c_text_of(data, size);
    check_table(text);
    check_json(text);
    return 0;
}
