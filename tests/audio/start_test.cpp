#include "audio/start.hpp"

#include "audio/sound_config.hpp"
#include "audio/sound_terminal.hpp"

#include <gtest/gtest.h>

namespace qvtc::audio {

namespace {

using test::joined;
using test::listed_card;
using test::read_file;
using test::Texts;
using test::write_file;

class SoundStart : public test::SoundTerminal {
  protected:
    SoundStart() { write_file(default_pa, "#load-module module-alsa-sink\n"); }

    /// What every start without HDMI begins with.
    static Texts beginning() { return joined({{test::find_onboard_card}, test::edit_default_pa}); }

    static constexpr const char* default_pa = "/etc/pulse/default.pa";
};

const std::string onboard = listed_card(2, "HDA Intel PCH", "ALC236 Analog");
const std::string headset = listed_card(1, "USB Headset", "USB Audio");
const std::string speaker = listed_card(3, "USB Speaker", "USB Audio");

const Texts use_onboard = {"/usr/bin/set_default_sink 3 >/dev/null 2>&1 &"};
const Texts use_usb_1 = {"amixer -c 1 sset \"Mic\" unmute >/dev/null 2>&1",
                         "amixer -c 1 sset \"Speaker\" unmute >/dev/null 2>&1",
                         "amixer -c 1 sset \"Auto Gain Control\" mute >/dev/null 2>&1",
                         "/usr/bin/set_default_sink 2 >/dev/null 2>&1 &"};
const Texts no_usb_card_logged = {"[ERROR] error:can not find usb audio card", ""};

const char* const control_names[] = {"Mic Playback Switch",
                                     "Master Playback Switch",
                                     "Headphone Playback Switch",
                                     "Headphone Playback Volume",
                                     "Capture Switch",
                                     "Capture Volume",
                                     "Input Source",
                                     "Loopback Mixing",
                                     "Mic Boost Volume"};

Texts all_switches(const std::string& card) {
    const char* const values[] = {"on", "on", "on", "100", "on", "100", "1", "1", "0"};
    Texts commands;
    for (std::size_t i = 0; i < std::size(values); ++i) {
        commands.push_back("amixer -c " + card + " cset name=\"" + control_names[i] + "\" " +
                           values[i] + " >/dev/null 2>&1");
    }
    return commands;
}

Texts contents(const std::string& card) { return {"amixer -c " + card + " contents"}; }

/// Setting both volumes on an onboard card, with the commands for USB cards.
Texts volumes(const std::string& card, const std::string& playback, const std::string& capture,
              const Texts& usb_playback, const Texts& usb_capture) {
    const Texts find = {test::find_onboard_card, test::list_controls(card)};
    return joined({find,
                   test::write_volume(card, "Master", playback),
                   usb_playback,
                   {test::chime},
                   find,
                   test::write_volume(card, "Mic", capture),
                   usb_capture});
}

/// What PulseAudio's start script should have become, worked out line by line.
std::string edited(const std::string& script) {
    const std::string sink = "load-module module-alsa-sink";
    const std::string source = "load-module module-alsa-source";
    std::string result;
    for (std::string line : test::lines_of(script)) {
        if (line.starts_with("#" + sink) || line.starts_with("#" + source)) line.erase(0, 1);
        const std::size_t at = line.find(sink);
        if (at != std::string::npos) line = line.substr(0, at + sink.size()) + " ";
        result += line + "\n";
    }
    return result;
}

} // namespace

TEST_F(SoundStart, WithoutAUsbCardUsesTheOnboardCard) {
    aplay.prints(test::list_head + onboard);
    start();
    EXPECT_EQ(test::recorded_commands(),
              joined({beginning(),
                      {test::find_first_usb_card},
                      test::configure_a_card,
                      use_onboard,
                      contents("2"),
                      volumes("2", "100", "100", {test::look_for_usb}, {test::look_for_usb})}));
    EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf")), asound_conf_lines(2));
    EXPECT_EQ(test::log_lines(), no_usb_card_logged);
    EXPECT_TRUE(test::wait_until([&] { return set_default_sink.calls().size() == 1; }));
    EXPECT_EQ(set_default_sink.calls(), (test::StandIn::Calls{{"3"}}));
    EXPECT_EQ(test::stored_setting("tc_config_param_14_0"), "100");
    EXPECT_EQ(test::stored_setting("tc_config_param_14_1"), "100");
}

TEST_F(SoundStart, WithoutAnyCardUsesCardZero) {
    start();
    EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf")), asound_conf_lines(0));
    EXPECT_EQ(test::log_lines(), no_usb_card_logged);
    EXPECT_EQ(test::recorded_commands().at(4), test::find_first_usb_card);
}

// Deliberate: what is switched on is the onboard card's also then.
TEST_F(SoundStart, DeliberatelyUsesTheFirstUsbCardButSwitchesTheOnboardCardOn) {
    aplay.prints(test::list_head + headset + onboard + speaker);
    std::string listing;
    for (const char* const name : control_names)
        listing += std::string("numid=1,iface=MIXER,name='") + name + "'\n";
    amixer.prints(listing);
    test::store_items(
        {{"configItem", {{"tc_config_param_14_0", "30"}, {"tc_config_param_14_1", "60"}}}});
    start();
    const Texts find_usb = {test::look_for_usb, test::find_last_usb_card};
    EXPECT_EQ(test::recorded_commands(),
              joined({beginning(),
                      {test::find_first_usb_card},
                      test::configure_a_card,
                      use_usb_1,
                      contents("2"),
                      all_switches("2"),
                      volumes("2", "30", "60",
                              joined({find_usb, test::write_volume("3", "Speaker", "30")}),
                              joined({find_usb, test::write_volume("3", "Mic", "60")}))}));
    EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf")), asound_conf_lines(1));
    EXPECT_EQ(test::log_lines(), Texts{});
    EXPECT_TRUE(test::wait_until([&] { return set_default_sink.calls().size() == 1; }));
    EXPECT_EQ(set_default_sink.calls(), (test::StandIn::Calls{{"2"}}));
}

TEST_F(SoundStart, SwitchesOnWhatTheCardHas) {
    for (std::size_t i = 0; i < std::size(control_names); ++i) {
        amixer.prints({std::string("x'") + control_names[i] + " Left'\n"}); // any part of the text
        test::forget_commands();
        start();
        const Texts commands = test::recorded_commands();
        EXPECT_EQ(std::count(commands.begin(), commands.end(), all_switches("0")[i]), 1)
            << control_names[i];
        // "Capture Volume" and the like are parts of no other name in the table.
        EXPECT_EQ(std::count_if(commands.begin(), commands.end(),
                                [](const std::string& each) {
                                    return each.find(" cset ") != std::string::npos;
                                }),
                  1)
            << control_names[i];
    }
}

TEST_F(SoundStart, OnHdmiDoesNothingElse) {
    aplay.prints(test::list_head + onboard + headset);
    write_file("/home/root/enable_hdmi_audio", "");
    start();
    EXPECT_EQ(test::recorded_commands(),
              (Texts{test::find_onboard_card, "/usr/bin/set_default_sink 1 >/dev/null 2>&1 &"}));
    EXPECT_FALSE(test::file_exists("/etc/asound.conf"));
    EXPECT_EQ(read_file(default_pa), "#load-module module-alsa-sink\n");
    EXPECT_EQ(test::stored_document(), "");
    EXPECT_EQ(test::log_lines(), Texts{});
    EXPECT_TRUE(test::wait_until([&] { return set_default_sink.calls().size() == 1; }));
    EXPECT_EQ(set_default_sink.calls(), (test::StandIn::Calls{{"1"}}));
}

TEST_F(SoundStart, LeavesAStoredVolumeOutOfRangeAlone) {
    test::store_items(
        {{"configItem", {{"tc_config_param_14_0", "150"}, {"tc_config_param_14_1", "60"}}}});
    start();
    EXPECT_EQ(test::stored_setting("tc_config_param_14_0"), "150");
    const Texts commands = test::recorded_commands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), test::chime), 0);
    EXPECT_EQ(
        std::count(commands.begin(), commands.end(), test::write_volume("0", "Mic", "60").back()),
        1);
}

TEST_F(SoundStart, EditsTheStartScriptOfPulseAudio) {
    write_file(default_pa,
               "# load-module module-alsa-sink\n"
               "#load-module module-alsa-sink\n"
               "#load-module module-alsa-source device=hw:1,0\n"
               "load-module module-alsa-sink device=hw:0,3 mmap=0 tsched=0\n"
               "  #load-module module-alsa-sink indented\n"
               "##load-module module-alsa-source\n"
               "#load-module module-alsa-sink-other x=y\n"
               "load-module module-null-sink; load-module module-alsa-sink a load-module "
               "module-alsa-sink b\n"
               "set-default-sink output\n");
    start();
    test::expect_golden("audio/default_pa.txt", read_file(default_pa));
    const std::string once = read_file(default_pa);
    start();
    EXPECT_EQ(read_file(default_pa), once);
}

TEST_F(SoundStart, EditsTheStartScriptThatPulseAudioComesWith) {
    const std::string& original = installed_default_pa();
    QVTC_NEED(!original.empty(), "pulseaudio is not installed");
    write_file(default_pa, original);
    start();
    const std::string after = read_file(default_pa);
    EXPECT_EQ(after, edited(original));
    EXPECT_NE(after, original);
    EXPECT_NE(after.find("\nload-module module-alsa-sink \n"), std::string::npos);
    EXPECT_NE(after.find("\nload-module module-alsa-source device=hw:1,0\n"), std::string::npos);
}

} // namespace qvtc::audio
