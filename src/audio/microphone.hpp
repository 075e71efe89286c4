#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::audio {

/// What the list of PulseAudio's sources tells about a webcam.
struct WebcamSearch {
    bool found = false;
    std::string index;              ///< one character, or none
    std::vector<std::string> paths; ///< the lines with a device's path, up to the webcam's
};

/// Walks `pacmd list-sources` up to the first webcam.
WebcamSearch find_webcam(std::string_view listing);

/// The number of the card in the last part of a device's path, or the one
/// character in its place; a text without a card stays as it is.
std::string card_in(const std::string& path_end);

/// Makes a webcam's microphone PulseAudio's default source, at full volume.
/// Without a webcam nothing changes.
void prefer_webcam_microphone();

} // namespace qvtc::audio
