#include "audio/start.hpp"

#include <string>

#include "audio/cards.hpp"
#include "audio/sound_config.hpp"
#include "audio/volume.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc::audio {

namespace {

// Uncomment PulseAudio's modules for ALSA, and drop the arguments of the sink's.
constexpr const char* default_pa_edits[] = {
    "sed -i \"s/^#load-module module-alsa-sink/load-module module-alsa-sink/\" "
    "/etc/pulse/default.pa",
    "sed -i \"s/^#load-module module-alsa-source/load-module module-alsa-source/\" "
    "/etc/pulse/default.pa",
    "sed -i \"/load-module module-alsa-sink/ s/\\(load-module module-alsa-sink\\).*/\\1 /\" "
    "/etc/pulse/default.pa",
};

struct Switch {
    const char* control;
    const char* value;
};

constexpr Switch onboard_switches[] = {
    {"Mic Playback Switch", "on"},
    {"Master Playback Switch", "on"},
    {"Headphone Playback Switch", "on"},
    {"Headphone Playback Volume", "100"},
    {"Capture Switch", "on"},
    {"Capture Volume", "100"},
    {"Input Source", "1"},
    {"Loopback Mixing", "1"},
    {"Mic Boost Volume", "0"},
};

void use_usb_card(int card) {
    configure_card(static_cast<unsigned>(card));
    os().run(textf("amixer -c %d sset \"Mic\" unmute >/dev/null 2>&1", card));
    os().run(textf("amixer -c %d sset \"Speaker\" unmute >/dev/null 2>&1", card));
    os().run(textf("amixer -c %d sset \"Auto Gain Control\" mute >/dev/null 2>&1", card));
    os().run("/usr/bin/set_default_sink 2 >/dev/null 2>&1 &");
}

void use_onboard_card(int card) {
    configure_card(static_cast<unsigned>(card));
    os().run("/usr/bin/set_default_sink 3 >/dev/null 2>&1 &");
    log(Level::error, "error:can not find usb audio card\n");
}

void switch_controls_on(int card) {
    const std::string contents = os().capture(textf("amixer -c %d contents", card), listing_limit);
    for (const Switch& each : onboard_switches) {
        if (!contains(contents, each.control)) continue;
        os().run(textf("amixer -c %d cset name=\"%s\" %s >/dev/null 2>&1", card, each.control,
                       each.value));
    }
}

} // namespace

void start() {
    const int onboard = onboard_card();
    if (os().exists(paths::hdmi_audio)) {
        os().run("/usr/bin/set_default_sink 1 >/dev/null 2>&1 &");
        return;
    }
    for (const char* const edit : default_pa_edits) os().run(edit);
    if (const auto usb_card = first_usb_card()) {
        use_usb_card(*usb_card);
    } else {
        use_onboard_card(onboard);
    }
    // Deliberate: the onboard card's, also when a USB card has just been chosen.
    switch_controls_on(onboard);
    restore_volume(Channel::playback);
    restore_volume(Channel::capture);
}

} // namespace qvtc::audio
