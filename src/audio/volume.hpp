#pragma once

#include <cstdint>
#include <string>

#include "core/json.hpp"

/// The volumes of the terminal's sound, in percent.
namespace qvtc::audio {

enum class Channel : std::uint8_t { playback, capture };

/// The volume of the onboard card; 0 when it tells none.
long volume(Channel channel);

/// Sets the volume on the onboard card and on a USB card, and remembers it.
/// A new playback volume is heard: a chime plays. False, with nothing changed,
/// for what is not within 0 to 100.
bool set_volume(Channel channel, long percent);

/// Sets the volume that the settings remember, or 100.
void restore_volume(Channel channel);

/// {"playVolume": "PERCENT", "micVolume": "PERCENT"}
Json volumes();

/// Sets what a parameter string names of "playVolume" and "micVolume"; a value
/// out of range ends it.
void set_volumes(const std::string& params);

} // namespace qvtc::audio
