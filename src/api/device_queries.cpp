#include "api/device_queries.hpp"

#include <cstdlib>

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/params.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::api {

namespace {

namespace keys = store::keys;

/// Room for a setting, or for what the battery says, with a NUL.
constexpr std::size_t text_size = 128;

/// In the order in which they are looked for.
constexpr const char* translations[] = {"zh_CN", "ko_KR", "en_US"};

std::string short_setting(const char* key) { return cut(store::setting(key), text_size - 1); }

bool picture_is_locked() {
    const std::string setting = short_setting(keys::boot_picture);
    return setting.size() > 1 && contains(setting, "'value':'1'");
}

/// The backslash keeps a shell's alias of cp, which would ask, out of the way.
constexpr const char* copy_chinese_picture =
    "\\cp -f /usr/share/plymouth/themes/darwin/background-zh_CN.png "
    "/usr/share/plymouth/themes/darwin/logo.png";
constexpr const char* copy_english_picture =
    "\\cp -f /usr/share/plymouth/themes/darwin/background-en_US.png "
    "/usr/share/plymouth/themes/darwin/logo.png";

} // namespace

std::string language() {
    std::string setting = short_setting(keys::language);
    for (const char* const translation : translations) {
        if (contains(setting, translation)) return translation;
    }
    return setting;
}

int set_language(const char* params) {
    ParamTable table;
    table.parse(params);
    const char* const language = table.find("language");
    log(Level::info, "%s language=%s", "qvsetlanguage", language != nullptr ? language : "(null)");
    if (language == nullptr) return 0;
    store::store_setting(keys::language, language);
    if (picture_is_locked()) return -1;
    // Deliberate: there is no Korean picture; every other language gets the English one.
    os().run(contains(language, "zh_CN") ? copy_chinese_picture : copy_english_picture);
    return 0;
}

int battery_charge() {
    if (!os().exists(paths::battery_charge)) return -1;
    const std::string output = os().capture("cat /sys/class/power_supply/BAT0/capacity", text_size);
    if (output.empty() || contains(output, "cat")) return -1; // the words of a failure
    return static_cast<int>(std::strtol(output.c_str(), nullptr, 10));
}

} // namespace qvtc::api
