#include "qvtcctl/sound_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 1> volume_table{{
    {"volume", "Show or set the volumes",
     "Shows the volumes in percent, or sets those that are given; 0 is silence. A volume is set on "
     "the onboard card and on the last USB card, and stored for the next start of the terminal's "
     "sound; it is read from the onboard card. A chime lets a new playback volume be heard.",
     "qvtcctl volume\n"
     "qvtcctl volume --playback 60\n"
     "qvtcctl volume --playback 0 --capture 80",
     define_volume},
}};

constexpr std::array<Verb, 2> sound_table{{
    {"show", "Show the sound cards",
     "Lists the sound cards that can play, says which of them is the default, and whether sound "
     "goes to HDMI instead.",
     "qvtcctl sound show\n"
     "qvtcctl sound show --json",
     define_sound_show},
    {"configure", "Make a sound card the default",
     "Makes a sound card the default for playing and recording, and a USB webcam's microphone the "
     "default source. This ends the running RDP clients and restarts PulseAudio, so you are asked "
     "first.",
     "qvtcctl sound configure 1\n"
     "qvtcctl sound configure 1 --yes",
     define_sound_configure},
}};
// clang-format on

} // namespace

std::span<const Verb> volume_verbs() { return volume_table; }

std::span<const Verb> sound_verbs() { return sound_table; }

} // namespace qvtc::qvtcctl
