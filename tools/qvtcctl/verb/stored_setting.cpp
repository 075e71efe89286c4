#include "qvtcctl/verb/stored_setting.hpp"

#include "qvtcctl/verb/settings_document.hpp"

#include <cstring>
#include <filesystem>

#include <qvtcapi/settings.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* item = "configItem";

/// More than any value can have: the library copies one as long as it is. The document may grow
/// between the two looks at it.
std::size_t room_for_any_value() {
    constexpr std::size_t growth = 1024UL * 1024;
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(settings_document, missing);
    return (missing ? 0 : size) + growth;
}

} // namespace

std::string stored_setting(const char* key, Chatter chatter) {
    std::string value(room_for_any_value(), '\0');
    const Quiet quiet(chatter);
    if (xmlread(item, key, value.data()) != 0) return "";
    value.resize(std::strlen(value.c_str()));
    return value;
}

bool store_setting(const char* key, std::string value, Chatter chatter) {
    const std::string wanted = value;
    {
        const Quiet quiet(chatter);
        xmlwrite(item, key, value.data());
    }
    return stored_setting(key, chatter) == wanted;
}

} // namespace qvtc::qvtcctl
