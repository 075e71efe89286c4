#pragma once

#include <string>
#include <vector>

namespace qvtc::test {

/// The real aplay and amixer, given cards that do not exist: as long as it lives, they stand in
/// /usr/local/bin and find the cards that were put in. Nothing can be played.
class SoundCards {
  public:
    /// The real programs must be installed.
    SoundCards();
    ~SoundCards();
    SoundCards(const SoundCards&) = delete;
    SoundCards& operator=(const SoundCards&) = delete;

    /// Puts a card in; card_file.hpp tells how one is described.
    void put_in(unsigned number, const std::string& description);
    void take_out(unsigned number);

    /// The values of a control's channels, as amixer tells them: "40,40", "on,on".
    static std::string value(unsigned card, const std::string& control);
};

// Cards as they are found in terminals.
extern const char* const onboard_analog_card;
extern const char* const hdmi_card;
extern const char* const usb_headset;
extern const char* const webcam_card;

} // namespace qvtc::test
