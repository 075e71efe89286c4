#include "store/numbered_store.hpp"

#include <cstring>

#include "core/base64.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/text.hpp"

namespace qvtc::store {

namespace {

/// Room for what the program prints, and for the whole command line that runs it.
constexpr std::size_t exchange_limit = 102400;

} // namespace

ReadOutcome read_numbered(unsigned key, std::size_t size, std::string& text) {
    // Deliberate: the number is written as a signed one; keys are small.
    const std::string output =
        os().capture(textf("qvplugin 0 %d", static_cast<int>(key)), exchange_limit);
    if (output.empty()) return ReadOutcome::none_or_too_long;
    const auto decoded = base64::decode(output);
    if (!decoded) return ReadOutcome::not_base64;
    std::string value = c_text(*decoded);
    if (value.size() >= size) return ReadOutcome::none_or_too_long;
    text = std::move(value);
    return ReadOutcome::read;
}

std::string numbered_text(unsigned key, std::size_t size) {
    std::string text;
    read_numbered(key, size, text);
    return text;
}

int write_numbered(unsigned key, const char* text) {
    if (text == nullptr) return -2;
    const std::string command =
        textf("qvplugin 1 %d ", static_cast<int>(key)) + base64::encode(text);
    if (command.size() >= exchange_limit) {
        log(Level::error, "@qvwritedb value of %d too long: %zu bytes", static_cast<int>(key),
            std::strlen(text));
        return -1;
    }
    os().run(command);
    return 0;
}

} // namespace qvtc::store
