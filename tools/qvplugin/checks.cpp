#include "qvplugin/checks.hpp"

#include "qvplugin/failure.hpp"

#include <algorithm>
#include <charconv>

namespace qvtc::qvplugin {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t longest_shown = 40;

} // namespace

std::uint32_t key_of(const std::string& word) {
    std::uint32_t key = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, key);
    if (error != std::errc() || stop != end || (word.size() > 1 && word.front() == '0')) {
        throw Failure(ExitCode::bad_usage,
                      shown(word) + " is not a valid key: expected a number from 0 to 4294967295, "
                                    "without a sign or leading zeros.");
    }
    return key;
}

void check_text(const std::string& text) {
    if (text.size() > text_limit) {
        throw Failure(ExitCode::bad_usage, "the text has " + std::to_string(text.size()) +
                                               " characters; at most 102400 are allowed.");
    }
    const std::size_t padding = text.size() - (text.find_last_not_of('=') + 1); // npos + 1 is 0
    const bool plain =
        text.find_first_not_of(alphabet) >= text.size() - padding; // npos is the largest of all
    if (!plain || padding > 2 || text.size() % 4 != 0) {
        throw Failure(ExitCode::bad_usage,
                      shown(text) +
                          " is not valid base64. Encode the value first: printf %s VALUE | "
                          "base64 -w 0");
    }
}

std::string shown(const std::string& word) {
    std::string text = word.substr(0, longest_shown);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return '"' + text + (word.size() > longest_shown ? "\"..." : "\"");
}

} // namespace qvtc::qvplugin
