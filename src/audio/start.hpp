#pragma once

namespace qvtc::audio {

/// Sets the terminal's sound up: on HDMI, if its marker is there; otherwise on
/// a USB card or the onboard card, with its controls switched on and the
/// volumes as they were saved.
void start();

} // namespace qvtc::audio
