#include "display/power_saving.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "core/os.hpp"
#include "core/text.hpp"
#include "display/pairs.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

namespace {

constexpr std::size_t shortest_text = 9;

int seconds_of(const std::string& minutes) {
    constexpr long long longest = std::numeric_limits<int>::max();
    constexpr long long seconds_per_minute = 60;
    return static_cast<int>(
        std::clamp(std::atoi(minutes.c_str()) * seconds_per_minute, -longest, longest));
}

void switch_off() {
    os().run("xset dpms 0 0 0 >/dev/null 2>&1");
    os().run("xset s off >/dev/null 2>&1");
}

void switch_on(int seconds) {
    os().run("xset s off >/dev/null 2>&1");
    os().run("xset dpms force on >/dev/null 2>&1");
    os().run(textf("xset dpms 0 0 %d >/dev/null 2>&1", seconds));
}

void put_into_force(const std::string& params) {
    const auto saving = value_of(params, "monitorPowerSave");
    if (!saving) return;
    if (!is_on(*saving)) {
        switch_off();
    } else if (const auto minutes = value_of(params, "monitorPowerSaveMins")) {
        switch_on(seconds_of(*minutes));
    }
}

Json power_saving_object(const std::string& saving, const std::string& minutes) {
    Json object = json_map();
    add_member(object, "monitorPowerSave", json_string(saving));
    add_member(object, "monitorPowerSaveMins", json_string(minutes));
    return object;
}

} // namespace

void start() {
    const std::string params = store::setting(store::keys::monitor_power_saving);
    if (params.empty()) {
        switch_off();
    } else {
        put_into_force(params);
    }
}

void set_power_saving(const std::string& params) {
    if (params.size() < shortest_text) return;
    put_into_force(params);
    store::store_setting(store::keys::monitor_power_saving, params);
}

Json power_saving() {
    const std::string params = store::setting(store::keys::monitor_power_saving);
    if (params.empty()) return power_saving_object("off", "5");
    if (params.size() < shortest_text) return nullptr;
    return power_saving_object(value_of(params, "monitorPowerSave").value_or("on"),
                               value_of(params, "monitorPowerSaveMins").value_or("5"));
}

} // namespace qvtc::display
