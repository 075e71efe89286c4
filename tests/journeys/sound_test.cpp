// The real PulseAudio, with sources that look like a webcam's.
#include "desktop.hpp"
#include "support/sound_cards/sound_cards.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* start_script = "/etc/pulse/default.pa";

class Sound : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* const program : {"pulseaudio", "pacmd", "pactl", "aplay", "amixer"})
            QVTC_NEED_PROGRAM(program);
        original_ = read_file(start_script);
    }
    void TearDown() override {
        output_of("pulseaudio --kill 2>/dev/null");
        if (!original_.empty()) write_file(start_script, original_);
    }

    /// Lets PulseAudio start with these lines at the end of its script.
    void pulseaudio_starts_with(const std::string& lines) {
        write_file(start_script, original_ + "\n" + lines);
    }

  private:
    std::string original_;
};

std::string source(const std::string& name, const std::string& properties = "") {
    return "load-module module-pipe-source source_name=" + name + " file=/run/pa-" + name +
           " source_properties=\"" + properties + "\"\n";
}

std::string webcam_on(const std::string& card) {
    return source("webcam", "sysfs.path=/devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3:1.2/sound/" +
                                card + " device.bus=usb device.form_factor=webcam");
}

std::string default_source() {
    return output_of("pactl info | sed -n 's/^Default Source: //p'").text;
}

std::string name_of_source(unsigned index) {
    return output_of("pactl list short sources | awk '$1 == " + std::to_string(index) +
                     " {print $2}'")
        .text;
}

TEST_F(Sound, OfAWebcamBecomesTheDefaultSource) {
    SoundCards cards;
    cards.put_in(1, webcam_card);
    pulseaudio_starts_with(source("line") + webcam_on("card1") + "set-default-source line\n");
    output_of("pulseaudio --start 2>/dev/null");
    ASSERT_EQ(default_source(), "line\n");
    const std::string former = output_of("pidof pulseaudio").text;

    EXPECT_EQ(set_sound_config(0), 0);

    EXPECT_EQ(default_source(), "webcam\n");
    EXPECT_EQ(SoundCards::value(1, "Mic Capture Volume"), "6144");
    EXPECT_NE(output_of("pidof pulseaudio").text, former);
    EXPECT_NE(read_file("/etc/asound.conf").find("\tcard 0\n"), std::string::npos);

    output_of("pactl set-default-source line");
    EXPECT_EQ(set_sound_config(0), 0); // again, and again it starts
    EXPECT_EQ(default_source(), "webcam\n");
}

// Deliberate: of the index 12 only the last digit is used.
TEST_F(Sound, DeliberatelyTakesTheTwelfthSourceForTheSecond) {
    std::string lines;
    for (int i = 1; i < 12; ++i) lines += source("line" + std::to_string(i));
    pulseaudio_starts_with(lines + webcam_on("card1") + "set-default-source line9\n");

    EXPECT_EQ(set_sound_config(0), 0);

    EXPECT_EQ(name_of_source(12), "webcam\n");
    EXPECT_EQ(default_source(), name_of_source(2));
    EXPECT_NE(default_source(), "line9\n");
}

TEST_F(Sound, WithoutAWebcamKeepsItsDefaultSource) {
    pulseaudio_starts_with(source("line") + source("headset", "device.form_factor=headset") +
                           "set-default-source line\n");
    EXPECT_EQ(set_sound_config(0), 0);
    EXPECT_EQ(default_source(), "line\n");
}

// Deliberate: a card of two digits is not reached.
TEST_F(Sound, DeliberatelyLeavesTheVolumeOfATwelfthCard) {
    SoundCards cards;
    cards.put_in(1, webcam_card);
    cards.put_in(12, webcam_card);
    pulseaudio_starts_with(source("line") + webcam_on("card12"));
    EXPECT_EQ(set_sound_config(0), 0);
    EXPECT_EQ(default_source(), "webcam\n");
    EXPECT_EQ(SoundCards::value(12, "Mic Capture Volume"), "100");
    EXPECT_EQ(SoundCards::value(1, "Mic Capture Volume"), "100");
}

} // namespace
} // namespace qvtc::test
