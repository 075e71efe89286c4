#include "audio/exports.hpp"

#include "audio/sound_terminal.hpp"

#include <gtest/gtest.h>
#include <json-c/json.h>

namespace qvtc::test {

namespace {

class AudioExports : public SoundTerminal {};

std::string text_of(json_object* object) {
    const std::string text =
        object == nullptr ? "null" : json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

/// Answers every question after a control with its volume.
constexpr const char* mixer = "case \"$*\" in\n"
                              "'-c 0') echo \"Simple mixer control 'Speaker',0\"\n"
                              "        echo \"Simple mixer control 'Capture',0\" ;;\n"
                              "*\"sget Speaker\") echo '  Mono: Playback 20 [23%] [off]' ;;\n"
                              "*\"sget Capture\") echo '  Front Left: Capture 10 [16%] [on]'\n"
                              "                   echo '  Front Right: Capture 60 [95%] [on]' ;;\n"
                              "esac";

const Texts find = {find_onboard_card, list_controls("0")};

Texts set_at(const char* control, const char* percent) {
    return joined({find, write_volume("0", control, percent), {look_for_usb}});
}

} // namespace

TEST_F(AudioExports, VolumesAreAnObjectOfItsOwnForEachCall) {
    amixer.runs(mixer);
    for (json_object* (*const getter)() : {qvgetvolume, getvolume}) {
        forget_commands();
        json_object* const first = getter();
        EXPECT_EQ(
            recorded_commands(),
            joined({find, {read_volume("0", "Speaker")}, find, {read_volume("0", "Capture")}}));
        json_object* const second = getter();
        EXPECT_NE(first, second);
        EXPECT_EQ(text_of(first), R"({"playVolume":"23","micVolume":"16"})");
        EXPECT_EQ(text_of(second), R"({"playVolume":"23","micVolume":"16"})");
    }
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(AudioExports, ACardThatTellsNoVolumeHasZero) {
    EXPECT_EQ(text_of(qvgetvolume()), R"({"playVolume":"0","micVolume":"0"})");
    amixer.prints("  Capabilities: pswitch\n  Mono: Playback [on]\n");
    EXPECT_EQ(text_of(qvgetvolume()), R"({"playVolume":"0","micVolume":"0"})");
}

TEST_F(AudioExports, VolumesAreSetAndAlwaysZeroIsGiven) {
    for (int (*const setter)(const char*) : {qvsetvolume, setvolume}) {
        forget_commands();
        EXPECT_EQ(setter("playVolume=0&micVolume=40"), 0);
        EXPECT_EQ(recorded_commands(),
                  joined({set_at("Master", "0"), {chime}, set_at("Mic", "40")}));
        EXPECT_EQ(stored_setting("tc_config_param_14_0"), "0");
        EXPECT_EQ(stored_setting("tc_config_param_14_1"), "40");

        forget_commands();
        EXPECT_EQ(setter("playVolume=150&micVolume=41"), 0);
        EXPECT_EQ(recorded_commands(), find);
        EXPECT_EQ(stored_setting("tc_config_param_14_1"), "40");

        forget_commands();
        EXPECT_EQ(setter("micVolume=39"), 0);
        EXPECT_EQ(recorded_commands(), set_at("Mic", "39"));
        forget_commands();
        EXPECT_EQ(setter(""), 0);
        EXPECT_EQ(setter(nullptr), 0);
        EXPECT_EQ(recorded_commands(), Texts{});
    }
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(AudioExports, TheChimeIsNotWaitedFor) {
    aplay.runs("[[ $1 == -l ]] && exit\n"
               "until [[ -f /tmp/go ]]; do sleep 0.01; done; echo \"$*\" >/tmp/played");
    EXPECT_EQ(qvsetvolume("playVolume=10"), 0);
    EXPECT_FALSE(file_exists("/tmp/played"));
    write_file("/tmp/go", "");
    EXPECT_TRUE(wait_until([] { return file_exists("/tmp/played"); }));
    EXPECT_EQ(aplay.calls().back(), (StandIn::Arguments{"/var/lib/ralo/chord.wav"}));
}

TEST_F(AudioExports, OneVolumeIsReadOrSet) {
    amixer.runs(mixer);
    long value = -7;
    EXPECT_EQ(audio_volume(0, 0, &value), 0);
    EXPECT_EQ(value, 23);
    EXPECT_EQ(audio_volume(0, 1, &value), 0);
    EXPECT_EQ(value, 16);
    EXPECT_EQ(recorded_commands(),
              joined({find, {read_volume("0", "Speaker")}, find, {read_volume("0", "Capture")}}));
    forget_commands();
    value = 70;
    EXPECT_EQ(audio_volume(1, 0, &value), 0);
    EXPECT_EQ(audio_volume(1, 1, &value), 0);
    EXPECT_EQ(recorded_commands(),
              joined({set_at("Speaker", "70"), {chime}, set_at("Capture", "70")}));
    forget_commands();
    for (const long wrong : {-1L, 101L, 4294967296L}) {
        value = wrong;
        EXPECT_EQ(audio_volume(1, 1, &value), -1);
        EXPECT_EQ(value, wrong);
    }
    EXPECT_EQ(recorded_commands(), joined({find, find, find}));
    EXPECT_EQ(stored_setting("tc_config_param_14_1"), "70");
}

TEST_F(AudioExports, NoOtherOperationOrChannelDoesAnything) {
    long value = 50;
    for (const unsigned operation : {2U, 3U, 4294967295U}) {
        EXPECT_EQ(audio_volume(operation, 0, &value), 0);
        EXPECT_EQ(audio_volume(operation, 9, nullptr), 0);
    }
    EXPECT_EQ(log_lines(), Texts{});
    EXPECT_EQ(audio_volume(0, 2, &value), -1);
    EXPECT_EQ(audio_volume(1, 4294967295U, &value), -1);
    EXPECT_EQ(audio_volume(0, 0, nullptr), -1);
    EXPECT_EQ(value, 50);
    EXPECT_EQ(recorded_commands(), Texts{});
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] @audio_volume no channel 2, or no value",
                                  "[ERROR] @audio_volume no channel 4294967295, or no value",
                                  "[ERROR] @audio_volume no channel 0, or no value"}));
}

TEST_F(AudioExports, HdmiIsThereWhenTheListNamesIt) {
    EXPECT_EQ(qvishdmiaudioenable(), 0);
    aplay.prints(list_head + listed_card(0, "HDA Intel PCH", "ALC236 Analog"));
    EXPECT_EQ(qvishdmiaudioenable(), 0);
    aplay.prints(list_head + listed_card(0, "HDA Intel PCH", "HDMI 0"));
    EXPECT_EQ(qvishdmiaudioenable(), 1);
    EXPECT_EQ(recorded_command_details(),
              std::vector<RecordedCommand>(3, RecordedCommand{look_for_hdmi, true}));
}

TEST_F(AudioExports, ACardIsConfigured) {
    EXPECT_EQ(set_sound_config(1), 0);
    EXPECT_EQ(recorded_commands(), configure_a_card);
    expect_golden("audio/asound_1.conf", read_file("/etc/asound.conf"));
}

TEST_F(AudioExports, AWebcamsMicrophoneIsLookedFor) {
    EXPECT_EQ(set_camera_mic_default_source(), 0);
    EXPECT_EQ(recorded_commands(), Texts{list_sources});
}

TEST_F(AudioExports, TheSoundIsStarted) {
    write_file("/etc/pulse/default.pa", "");
    EXPECT_EQ(volumeinit(), 0);
    EXPECT_EQ(recorded_commands(),
              joined({{find_onboard_card},
                      edit_default_pa,
                      {find_first_usb_card},
                      configure_a_card,
                      {"/usr/bin/set_default_sink 3 >/dev/null 2>&1 &", "amixer -c 0 contents"},
                      set_at("Master", "100"),
                      {chime},
                      set_at("Mic", "100")}));
    write_file("/home/root/enable_hdmi_audio", "");
    forget_commands();
    EXPECT_EQ(volumeinit(), 0);
    EXPECT_EQ(recorded_commands(),
              (Texts{find_onboard_card, "/usr/bin/set_default_sink 1 >/dev/null 2>&1 &"}));
}

} // namespace qvtc::test
