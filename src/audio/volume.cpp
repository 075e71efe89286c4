#include "audio/volume.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <utility>

#include "audio/cards.hpp"
#include "core/os.hpp"
#include "core/params.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::audio {

namespace {

struct Controls {
    const char* first;  ///< on an onboard card, and there also when it has neither
    const char* second; ///< on an onboard card without the first one
    const char* usb;
    const char* setting;
    const char* param;
};

constexpr Controls controls_of_channels[] = {
    {"Master", "Speaker", "Speaker", store::keys::playback_volume, "playVolume"},
    {"Mic", "Capture", "Mic", store::keys::capture_volume, "micVolume"},
};

const Controls& controls_of(Channel channel) {
    return controls_of_channels[static_cast<std::size_t>(channel)];
}

constexpr long full_volume = 100;

/// An onboard card and its control for a channel.
struct Place {
    int card;
    const char* control;
};

Place onboard_place(Channel channel) {
    const int card = onboard_card();
    const std::string listing = os().capture(textf("amixer -c %d", card), listing_limit);
    const Controls& controls = controls_of(channel);
    for (const char* const control : {controls.first, controls.second}) {
        if (contains(listing, textf("Simple mixer control '%s'", control))) return {card, control};
    }
    return {card, controls.first};
}

long volume_at(const Place& place) {
    const std::string percent = os().capture(
        textf("amixer -c %d sget '%s'|grep '[o[nf]*]'|grep -o '[[0-9]*%%]'|grep -o '[0-9]*'|"
              "awk 'NR==1'",
              place.card, place.control),
        128);
    return std::strtol(percent.c_str(), nullptr, 10);
}

void set_volume_at(const Place& place, long percent) {
    os().run(textf("amixer -c %d sset \"%s\" unmute >/dev/null 2>&1", place.card, place.control));
    os().run(textf("amixer -c %d set \"%s\" %d%% >/dev/null 2>&1", place.card, place.control,
                   static_cast<int>(percent)));
}

/// As atoi reads it; what no int can hold stays as far out of range as it is.
int number_in(const char* text) {
    const long number = std::strtol(text, nullptr, 10);
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

} // namespace

long volume(Channel channel) { return volume_at(onboard_place(channel)); }

bool set_volume(Channel channel, long percent) {
    const Place onboard = onboard_place(channel);
    if (percent < 0 || percent > full_volume) return false;
    set_volume_at(onboard, percent);
    const Controls& controls = controls_of(channel);
    if (const auto usb_card = last_usb_card()) set_volume_at({*usb_card, controls.usb}, percent);
    store::store_setting(controls.setting, textf("%i", static_cast<int>(percent)));
    if (channel == Channel::playback) os().run("aplay /var/lib/ralo/chord.wav >/dev/null 2>&1 &");
    return true;
}

void restore_volume(Channel channel) {
    const std::string remembered = store::setting(controls_of(channel).setting);
    set_volume(channel, remembered.empty() ? full_volume : number_in(remembered.c_str()));
}

Json volumes() {
    const long playback = volume(Channel::playback);
    const long capture = volume(Channel::capture);
    Json object = json_pair("playVolume", std::to_string(playback));
    add_member(object, "micVolume", json_string(std::to_string(capture)));
    return object;
}

void set_volumes(const std::string& params) {
    ParamTable table;
    table.parse(params);
    for (const Channel channel : {Channel::playback, Channel::capture}) {
        const char* const value = table.find(controls_of(channel).param);
        if (value != nullptr && !set_volume(channel, number_in(value))) return;
    }
}

} // namespace qvtc::audio
