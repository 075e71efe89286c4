#include "system/date_time.hpp"

#include <optional>

#include "core/line_file.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/params.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::system {

namespace {

constexpr const char* synchronise = "ntpdate-sync>/dev/null &";
constexpr std::size_t reading_limit = 256; // of the setting, and of the clock

struct Zone {
    std::string region = "Etc";
    std::string city = "UTC";
};

/// A parameter's value; empty when it is missing.
class Params {
  public:
    explicit Params(const std::string& text) { table_.parse(text); }
    std::string operator[](const char* name) const {
        const char* value = table_.find(name);
        return value == nullptr ? "" : value;
    }

  private:
    ParamTable table_;
};

std::string or_else(const std::string& value, const char* otherwise) {
    return value.empty() ? otherwise : value;
}

std::string milliseconds_now() {
    std::string seconds = os().capture("date +%s", reading_limit);
    if (!seconds.empty()) seconds.pop_back(); // the newline
    return seconds + "000";
}

/// The synchronisation that is asked for, as a getter tells it.
std::string synchronisation_of(const Params& stored) {
    std::string value = stored["useNTP"];
    if (value.size() <= 1) return "off";
    // Deliberate: to look at the settings brings the clock up to date, also
    // where the stored value is "off".
    os().run(synchronise);
    return value;
}

void use_zone(const Zone& zone) {
    os().run("rm -rf /etc/localtime");
    os().run(textf("ln -s /usr/share/zoneinfo/posix/%s/%s /etc/localtime",
                   shell::word(zone.region, shell::At::inside_word).c_str(),
                   shell::word(zone.city, shell::At::inside_word).c_str()));
    os().run(textf("echo '%s/%s'>/etc/timezone", shell::in_single(zone.region).c_str(),
                   shell::in_single(zone.city).c_str()));
}

void add_text(const Json& object, const char* name, std::string_view text) {
    add_member(object, name, json_string(text));
}

} // namespace

std::vector<std::string> synchronisation_lines(const std::string& host) {
    return {"# Configuration script used by ntpdate-sync script",
            "",
            textf("NTPSERVERS=\"%s\"", shell::in_double(one_line(host)).c_str()),
            "",
            "# Set to \"yes\" to write time to hardware clock on success",
            "UPDATE_HWCLOCK=\"no\"",
            ""};
}

Json date_time() {
    const std::string setting = cut(store::setting(store::keys::date_and_time), reading_limit - 1);
    const std::string now = milliseconds_now();
    const Params stored(setting);
    Json object = json_map();
    add_text(object, "systemTime", now);
    add_text(object, "useNTP", setting.empty() ? "" : synchronisation_of(stored));
    add_text(object, "ntpHost", stored["ntpHost"]);
    add_text(object, "region", or_else(stored["region"], "Etc"));
    add_text(object, "city", or_else(stored["city"], "UTC"));
    log(Level::info, "systemtime:%s", json_object_to_json_string(object.get()));
    return object;
}

void set_date_time(const std::string& params) {
    log(Level::info, "time:%s", params.c_str());
    const Params asked(params);
    const bool wants_synchronisation = is_on(asked["useNTP"]);
    const std::string host = wants_synchronisation ? asked["ntpHost"] : "";
    std::optional<std::string> set_clock;
    if (const std::string time = asked["systemTime"]; !wants_synchronisation && !time.empty())
        set_clock = textf("date -s \"%s\"", shell::in_double(time).c_str());

    // The configuration comes before the clock where a host is named.
    if (!host.empty()) write_lines("/etc/default/ntpdate", synchronisation_lines(host));
    if (set_clock) os().run(*set_clock);
    if (host.empty()) write_lines("/etc/default/ntpdate", synchronisation_lines(""));

    const Zone zone{asked["region"], asked["city"]};
    use_zone(zone.region.empty() || zone.city.empty() ? Zone{} : zone);
    if (host.empty()) {
        // Once more: a local time has its meaning in the new zone.
        if (set_clock) os().run(*set_clock);
        os().run("hwclock --systohc");
        os().run("clock -w");
    } else {
        os().run(synchronise);
    }
    store::store_setting(store::keys::date_and_time, params);
}

} // namespace qvtc::system
