#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

enum class CardKind { onboard, usb, hdmi };

/// A sound card that ALSA can play on.
struct SoundCard {
    unsigned number = 0;
    std::string name;
    CardKind kind = CardKind::onboard;
    std::vector<std::string> devices;
};

/// For people, and in small letters for programs.
std::string_view title_of(CardKind kind);
std::string_view name_of(CardKind kind);

/// The cards in a list as "aplay -l" prints it. A card with an HDMI device and another one is an
/// onboard card, as it is for the library.
std::vector<SoundCard> parse_sound_cards(std::string_view list);

/// The card that ALSA's configuration, in the library's form, makes the default.
std::optional<unsigned> default_card_in(std::string_view asound_conf);

/// This terminal's. Refuses (ExitCode::not_done) when aplay cannot be asked.
std::vector<SoundCard> sound_cards();
std::optional<unsigned> default_card();

const SoundCard* find_card(const std::vector<SoundCard>& cards, unsigned number);

} // namespace qvtc::qvtcctl
