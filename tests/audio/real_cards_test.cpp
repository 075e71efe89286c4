// The real aplay and amixer, on cards that are described instead of plugged in.
#include "audio/exports.hpp"
#include "connections/documents.hpp"
#include "support/sound_cards/sound_cards.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <json-c/json.h>

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

/// Without PulseAudio: what it is told is looked at elsewhere.
class RealCards : public FreshTerminal {
  protected:
    void SetUp() override {
        for (const char* const program : {"/usr/bin/aplay", "/usr/bin/amixer"})
            QVTC_NEED(file_exists(program), std::string(program) + " is not installed");
        cards.put_in(0, hdmi_card);
        cards.put_in(1, onboard_analog_card);
    }

    SoundCards cards;
    StandIn killall{"killall"};
    StandIn pacmd{"pacmd"};
    StandIn pulseaudio{"/usr/bin/pulseaudio"};
    StandIn set_default_sink{"/usr/bin/set_default_sink"};
};

std::string volumes() {
    json_object* const object = qvgetvolume();
    const std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

/// Whether the card that ALSA is configured for has this number.
bool is_configured_for(unsigned card) {
    const Texts lines = lines_of(read_file("/etc/asound.conf"));
    const std::string number = std::to_string(card);
    return std::count(lines.begin(), lines.end(), "\t\tpcm \"hw:" + number + ",0\"") == 2 &&
           std::count(lines.begin(), lines.end(), "\tcard " + number) == 1;
}

} // namespace

TEST_F(RealCards, GiveTheirVolumesBack) {
    EXPECT_EQ(volumes(), R"({"playVolume":"23","micVolume":"0"})");
    for (const char* const percent : {"0", "1", "23", "50", "99", "100"}) {
        const std::string params = std::string("playVolume=") + percent + "&micVolume=" + percent;
        EXPECT_EQ(qvsetvolume(params.c_str()), 0);
        // The microphone of this card is "Mic", which sounds back but records nothing by itself.
        EXPECT_EQ(stored_setting("tc_config_param_14_0"), percent);
        long playback = -1;
        EXPECT_EQ(audio_volume(0, 0, &playback), 0);
        EXPECT_NEAR(static_cast<double>(playback), std::stod(percent), 1) << percent;
        EXPECT_EQ(SoundCards::value(1, "Master Playback Switch"), "on");
    }
    EXPECT_EQ(SoundCards::value(1, "Master Playback Volume"), "87");
    EXPECT_EQ(qvsetvolume("playVolume=0"), 0);
    EXPECT_EQ(SoundCards::value(1, "Master Playback Volume"), "0");
    EXPECT_EQ(qvsetvolume("playVolume=101"), 0);
    EXPECT_EQ(SoundCards::value(1, "Master Playback Volume"), "0");
}

TEST_F(RealCards, ACaptureVolumeIsSetWhereTheCardHasNoMic) {
    cards.put_in(1, "id|PCH\nname|HDA Intel PCH\ndevice|0|ALC236 Analog\n"
                    "volume|Speaker Playback Volume|2|0|87|20\nswitch|Speaker Playback Switch|2|0\n"
                    "volume|Capture Volume|2|0|63|10\nswitch|Capture Switch|2|1\n");
    EXPECT_EQ(volumes(), R"({"playVolume":"23","micVolume":"16"})");
    EXPECT_EQ(qvsetvolume("playVolume=50&micVolume=100"), 0);
    EXPECT_EQ(volumes(), R"({"playVolume":"51","micVolume":"100"})");
    EXPECT_EQ(SoundCards::value(1, "Capture Volume"), "63,63");
    EXPECT_EQ(SoundCards::value(1, "Speaker Playback Switch"), "on,on");
}

TEST_F(RealCards, AUsbHeadsetIsSetToo) {
    cards.put_in(2, usb_headset);
    EXPECT_EQ(qvsetvolume("playVolume=100&micVolume=100"), 0);
    EXPECT_EQ(SoundCards::value(1, "Master Playback Volume"), "87");
    EXPECT_EQ(SoundCards::value(2, "Speaker Playback Volume"), "127,127");
    EXPECT_EQ(SoundCards::value(2, "Speaker Playback Switch"), "on,on");
    EXPECT_EQ(SoundCards::value(2, "Mic Capture Volume"), "50");
}

TEST_F(RealCards, OfSeveralUsbCardsTheLastIsSet) {
    cards.put_in(2, usb_headset);
    cards.put_in(3, usb_headset);
    EXPECT_EQ(qvsetvolume("playVolume=100"), 0);
    EXPECT_EQ(SoundCards::value(2, "Speaker Playback Volume"), "30,30");
    EXPECT_EQ(SoundCards::value(3, "Speaker Playback Volume"), "127,127");
}

TEST_F(RealCards, HdmiIsFoundAmongThem) {
    EXPECT_EQ(qvishdmiaudioenable(), 1);
    cards.take_out(0);
    EXPECT_EQ(qvishdmiaudioenable(), 0);
}

TEST_F(RealCards, AStartSwitchesTheOnboardCardOn) {
    EXPECT_EQ(volumeinit(), 0);
    EXPECT_TRUE(is_configured_for(1));
    const std::pair<const char*, const char*> values[] = {
        {"Mic Playback Switch", "on,on"},
        {"Master Playback Switch", "on"},
        {"Headphone Playback Switch", "on,on"},
        {"Headphone Playback Volume", "87,87"},
        {"Capture Switch", "on,on"},
        {"Capture Volume", "63,63"},
        {"Input Source", "1"},
        {"Loopback Mixing", "1"},
        {"Mic Boost Volume", "0,0"},
        {"Master Playback Volume", "87"},
        {"Mic Playback Volume", "31,31"},
    };
    for (const auto& [control, value] : values)
        EXPECT_EQ(SoundCards::value(1, control), value) << control;
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] error:can not find usb audio card", ""}));
}

TEST_F(RealCards, AStartUsesAHeadsetAndItsStoredVolumes) {
    cards.put_in(2, usb_headset);
    store_items({{"configItem", {{"tc_config_param_14_0", "50"}, {"tc_config_param_14_1", "20"}}}});
    EXPECT_EQ(volumeinit(), 0);
    EXPECT_TRUE(is_configured_for(2));
    EXPECT_EQ(SoundCards::value(2, "Auto Gain Control"), "off");
    EXPECT_EQ(SoundCards::value(2, "Speaker Playback Switch"), "on,on");
    EXPECT_EQ(SoundCards::value(2, "Speaker Playback Volume"), "64,64");
    EXPECT_EQ(SoundCards::value(2, "Mic Capture Volume"), "10");
    EXPECT_EQ(SoundCards::value(1, "Headphone Playback Switch"), "on,on");
    EXPECT_EQ(SoundCards::value(1, "Master Playback Volume"), "44");
    EXPECT_TRUE(wait_until([&] { return set_default_sink.calls().size() == 1; }));
    EXPECT_EQ(set_default_sink.calls(), (StandIn::Calls{{"2"}}));
}

TEST_F(RealCards, AplayTakesTheirConfiguration) {
    EXPECT_EQ(set_sound_config(1), 0);
    std::string errors;
    const std::string names = capture_stdout(
        [&] { errors = capture_stderr([] { EXPECT_EQ(std::system("aplay -L"), 0); }); });
    EXPECT_EQ(errors, "");
    const Texts lines = lines_of(names);
    for (const char* const name : {"dsp0", "dmixer", "dsnooper", "duplexasym", "duplex", "default"})
        EXPECT_EQ(std::count(lines.begin(), lines.end(), name), 1) << name;
}

TEST_F(RealCards, AWebcamsMicrophoneIsSetToItsMost) {
    cards.put_in(3, webcam_card);
    pacmd.prints({"    index: 7\n" + std::string(100, '\n') +
                      "\t\tsysfs.path = \"/devices/usb1/sound/card3\"\n"
                      "\t\tdevice.form_factor = \"webcam\"\n",
                  ""});
    EXPECT_EQ(set_camera_mic_default_source(), 0);
    EXPECT_EQ(pacmd.calls(), (StandIn::Calls{{"list-sources"}, {"set-default-source", "7"}}));
    EXPECT_EQ(SoundCards::value(3, "Mic Capture Volume"), "6144");
}

} // namespace qvtc::test
