#include "core/params.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qvtc {

void ParamTable::parse(std::string_view text) {
    if (text.empty()) return;
    bytes_.fill('\0');
    readable_ = 0;
    std::size_t start = 0; // of the name or the value that is being filled
    std::size_t entry = 0;
    std::size_t offset = 0;
    for (const char c : text) {
        if (c == '=') {
            start = entry * entry_size + name_size;
            offset = 0;
            ++readable_;
        } else if (c == '&') {
            start = ++entry * entry_size;
            offset = 0;
        } else {
            if (start + offset < table_size) bytes_[start + offset] = c;
            ++offset;
        }
    }
}

const char* ParamTable::find(std::string_view name) const {
    for (std::size_t entry = 0; entry < std::min(readable_, entry_count); ++entry) {
        const char* const stored_name = bytes_.data() + entry * entry_size;
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

} // namespace qvtc
