#pragma once

#include <cstddef>
#include <optional>

/// The sound cards that ALSA lists, each by its number.
namespace qvtc::audio {

/// Bytes of a listing of cards or of a card's controls that are looked at.
inline constexpr std::size_t listing_limit = 10240;

/// The first card that is neither on USB nor HDMI; 0 when there is none.
int onboard_card();

/// The first card on USB.
std::optional<int> first_usb_card();

/// The last card on USB, looked for among as much of the list as fits into a
/// line of output.
std::optional<int> last_usb_card();

/// Whether the list names an HDMI device.
bool hdmi_device_present();

} // namespace qvtc::audio
