#pragma once

#include <string>
#include <vector>

/// The description of a sound card: a text of lines whose parts are separated by "|".
///
///     id|Headset
///     name|USB Headset
///     device|0|USB Audio                        a playback device and its name
///     switch|Speaker Playback Switch|2|1        channels, value at first
///     volume|Speaker Playback Volume|2|0|87|40  channels, least, most, value at first
///     choice|Input Source|1|Mic,Line|0          channels, names, value at first
namespace qvtc::test {

/// Where the card with that number is described, and where its changed values are kept.
inline std::string card_file(unsigned card) { return "/run/sound-cards/" + std::to_string(card); }
inline std::string card_values_file(unsigned card) { return card_file(card) + ".values"; }

struct CardDevice {
    unsigned number;
    std::string name;
};

struct CardControl {
    enum class Kind { switched, volume, choice };

    Kind kind;
    std::string name;
    unsigned channels;
    long least = 0;
    long most = 1;
    long first = 0;
    std::vector<std::string> choices;
};

struct Card {
    unsigned number = 0;
    std::string id;
    std::string name;
    std::vector<CardDevice> devices;
    std::vector<CardControl> controls;
};

/// Throws std::exception for a text that is none.
Card read_card(unsigned number, const std::string& text);

} // namespace qvtc::test
