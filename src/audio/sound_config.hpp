#pragma once

#include <string>
#include <vector>

namespace qvtc::audio {

/// The lines of ALSA's configuration for a card: a playback mixer and a capture
/// splitter that programs share, together the default device.
std::vector<std::string> asound_conf_lines(unsigned card);

/// Makes a card the terminal's sound card: rewrites ALSA's configuration,
/// restarts PulseAudio and picks a webcam's microphone. Ends running RDP
/// clients, which hold the sound device open.
void configure_card(unsigned card);

} // namespace qvtc::audio
