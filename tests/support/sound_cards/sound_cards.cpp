#include "support/sound_cards/sound_cards.hpp"

#include "support/sound_cards/card_file.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace qvtc::test {

namespace {

constexpr const char* programs[] = {"aplay", "amixer"};

} // namespace

SoundCards::SoundCards() {
    fs::create_directories("/run/sound-cards");
    for (const std::string program : programs) {
        const fs::path front = "/usr/local/bin/" + program;
        write_file(front, "#!/bin/bash\nLD_PRELOAD=" QVTC_PRETENDED_CARDS " exec /usr/bin/" +
                              program + " \"$@\"\n");
        fs::permissions(front, fs::perms::owner_all);
    }
}

SoundCards::~SoundCards() {
    std::error_code ignored;
    for (const std::string program : programs) fs::remove("/usr/local/bin/" + program, ignored);
    fs::remove_all("/run/sound-cards", ignored);
}

void SoundCards::put_in(unsigned number, const std::string& description) {
    write_file(card_file(number), description);
}

void SoundCards::take_out(unsigned number) {
    fs::remove(card_file(number));
    fs::remove(card_values_file(number));
}

std::string SoundCards::value(unsigned card, const std::string& control) {
    const std::string command = "/usr/local/bin/amixer -c " + std::to_string(card) +
                                " cget name='" + control + "' 2>&1 | sed -n 's/^  : values=//p'";
    const std::string text = capture_stdout([&] { EXPECT_NE(std::system(command.c_str()), -1); });
    return text.empty() ? text : text.substr(0, text.size() - 1);
}

const char* const onboard_analog_card = "id|PCH\n"
                                        "name|HDA Intel PCH\n"
                                        "device|0|ALC236 Analog\n"
                                        "volume|Master Playback Volume|1|0|87|20\n"
                                        "switch|Master Playback Switch|1|0\n"
                                        "volume|Headphone Playback Volume|2|0|87|0\n"
                                        "switch|Headphone Playback Switch|2|0\n"
                                        "volume|Mic Playback Volume|2|0|31|0\n"
                                        "switch|Mic Playback Switch|2|0\n"
                                        "volume|Mic Boost Volume|2|0|3|2\n"
                                        "volume|Capture Volume|2|0|63|10\n"
                                        "switch|Capture Switch|2|0\n"
                                        "choice|Input Source|1|Internal Mic,Mic|0\n"
                                        "choice|Loopback Mixing|1|Disabled,Enabled|0\n";

const char* const hdmi_card = "id|HDMI\n"
                              "name|HDA Intel HDMI\n"
                              "device|3|HDMI 0\n"
                              "switch|IEC958 Playback Switch|1|0\n";

const char* const usb_headset = "id|Headset\n"
                                "name|USB Headset\n"
                                "device|0|USB Audio\n"
                                "volume|Speaker Playback Volume|2|0|127|30\n"
                                "switch|Speaker Playback Switch|2|0\n"
                                "volume|Mic Capture Volume|1|0|50|5\n"
                                "switch|Mic Capture Switch|1|0\n"
                                "switch|Auto Gain Control|1|1\n";

const char* const webcam_card = "id|C270\n"
                                "name|Webcam C270\n"
                                "volume|Mic Capture Volume|1|0|6144|100\n"
                                "switch|Mic Capture Switch|1|1\n";

} // namespace qvtc::test
