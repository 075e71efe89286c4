#include "core/params.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qvtc {

std::size_t ParamTable::fill(Bytes& bytes, std::string_view text) {
    bytes.fill('\0');
    std::size_t equal_signs = 0;
    std::size_t start = 0; // of the name or the value that is being filled
    std::size_t entry = 0;
    std::size_t offset = 0;
    for (const char c : text) {
        if (c == '=') {
            start = entry * entry_size + name_size;
            offset = 0;
            ++equal_signs;
        } else if (c == '&') {
            start = ++entry * entry_size;
            offset = 0;
        } else {
            // The last byte stays: a value at the very end is terminated, too.
            if (start + offset < bytes.size() - 1) bytes[start + offset] = c;
            ++offset;
        }
    }
    return std::min(equal_signs, entry_count);
}

const char* ParamTable::find(const Bytes& bytes, std::size_t readable, std::string_view name) {
    for (std::size_t entry = 0; entry < readable; ++entry) {
        const char* const stored_name = bytes.data() + entry * entry_size;
        const char* const value = stored_name + name_size;
        if (*stored_name != '\0' && *value != '\0' && name == stored_name) return value;
    }
    return nullptr;
}

char* next_token(char* text, const char* delimiters, char*& position) {
    if (text == nullptr) text = position;
    if (text == nullptr) return nullptr;
    text += std::strspn(text, delimiters);
    char* const end = std::strpbrk(text, delimiters);
    if (end != nullptr) *end = '\0';
    position = end != nullptr ? end + 1 : nullptr;
    return text;
}

std::string params_to_json(char* text) {
    std::vector<char*> pairs;
    char* position = nullptr;
    for (char* pair = next_token(text, "&", position); pair != nullptr;
         pair = next_token(nullptr, "&", position)) {
        pairs.push_back(pair);
    }
    std::string json = "{";
    for (char* const pair : pairs) {
        if (json.size() > 1) json += ',';
        for (char* piece = next_token(pair, "=", position); piece != nullptr;
             piece = next_token(nullptr, "=", position)) {
            json.append("\"").append(piece).append("\"");
            if (position != nullptr) json += ':';
        }
    }
    return json + "}";
}

std::string single_pair_value(std::string_view text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0) return {};
    text.remove_prefix(equals + 1);
    return std::string(text.substr(0, text.find('=')));
}

} // namespace qvtc
