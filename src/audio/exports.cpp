#include "audio/exports.hpp"

#include "audio/cards.hpp"
#include "audio/microphone.hpp"
#include "audio/sound_config.hpp"
#include "audio/start.hpp"
#include "audio/volume.hpp"
#include "core/log.hpp"

using namespace qvtc;
using audio::Channel;

namespace {

constexpr unsigned read_volume = 0;
constexpr unsigned write_volume = 1;

bool is_channel(unsigned channel) { return channel <= static_cast<unsigned>(Channel::capture); }

json_object* volumes() {
    return guard<json_object*>(nullptr, [] { return audio::volumes().release(); });
}

int set_volumes(const char* params) {
    if (given(params)) guard_void([&] { audio::set_volumes(params); });
    return 0;
}

} // namespace

extern "C" {

int set_sound_config(unsigned card) {
    guard_void([&] { audio::configure_card(card); });
    return 0;
}

int set_camera_mic_default_source() {
    guard_void(audio::prefer_webcam_microphone);
    return 0;
}

int volumeinit() {
    guard_void(audio::start);
    return 0;
}

int audio_volume(unsigned operation, unsigned channel, long* value) {
    return guard(-1, [&] {
        if (operation != read_volume && operation != write_volume) return 0;
        if (!is_channel(channel) || !given(value)) {
            log(Level::error, "@audio_volume no channel %u, or no value", channel);
            return -1;
        }
        if (operation == write_volume)
            return audio::set_volume(static_cast<Channel>(channel), *value) ? 0 : -1;
        *value = audio::volume(static_cast<Channel>(channel));
        return 0;
    });
}

json_object* qvgetvolume() { return volumes(); }

json_object* getvolume() { return volumes(); }

int qvsetvolume(const char* params) { return set_volumes(params); }

int setvolume(const char* params) { return set_volumes(params); }

int qvishdmiaudioenable() {
    return guard(0, [] { return audio::hdmi_device_present() ? 1 : 0; });
}
}
