#include "core/text.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace qvtc {

std::string textf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* formatted = nullptr;
    const int length = vasprintf(&formatted, format, arguments);
    va_end(arguments);
    if (length < 0) throw std::bad_alloc(); // half a value or command is worse than none
    const std::unique_ptr<char, decltype(&std::free)> owned(formatted, std::free);
    return {formatted, static_cast<std::size_t>(length)};
}

std::string c_text(std::string text) {
    const auto end = text.find('\0');
    if (end != std::string::npos) text.resize(end);
    return text;
}

std::string cut(std::string text, std::size_t limit) {
    if (text.size() <= limit) return text;
    const auto continues = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    };
    std::size_t end = limit;
    while (end > 0 && limit - end < 3 && continues(text[end])) --end;
    text.resize(continues(text[end]) ? limit : end);
    return text;
}

std::string replace_all(std::string text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

std::string replace_all(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty()) return std::string(text);
    std::string result;
    std::size_t start = 0;
    for (std::size_t at = text.find(from); at != std::string_view::npos;
         at = text.find(from, start)) {
        result.append(text, start, at - start).append(to);
        start = at + from.size();
    }
    return result.append(text, start);
}

std::string remove_all(std::string text, char unwanted) {
    std::erase(text, unwanted);
    return text;
}

std::string one_line(std::string_view value) {
    const std::size_t last = value.find_last_not_of(" \t\n\v\f\r");
    return replace_all(std::string(value.substr(0, last + 1)), '\n', ' ');
}

void copy_out(char* destination, std::size_t size, std::string_view text) {
    if (size == 0) return;
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(destination, text.data(), length);
    destination[length] = '\0';
}

void copy_out_whole(char* destination, std::string_view text) {
    copy_out(destination, text.size() + 1, text);
}

char* allocate_copy(std::string_view text, std::size_t size) {
    auto* copy = static_cast<char*>(std::calloc(std::max(size, text.size() + 1), 1));
    if (copy != nullptr) std::memcpy(copy, text.data(), text.size());
    return copy;
}

} // namespace qvtc
