#include "audio/volume.hpp"

#include "audio/sound_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::audio {

namespace {

using test::captured;
using test::stored_setting;
using test::Texts;

class Volume : public test::SoundTerminal {};

constexpr const char* playback_key = "tc_config_param_14_0";
constexpr const char* capture_key = "tc_config_param_14_1";

std::string control(const std::string& name) { return "Simple mixer control '" + name + "',0\n"; }

/// Finding the onboard card and its controls, as ScriptedOs notes it.
Texts find_place(const std::string& card) {
    return {captured(10240, test::find_onboard_card), captured(10240, test::list_controls(card))};
}

const Texts no_usb_card = {captured(128, test::look_for_usb)};
const Texts a_usb_card = {captured(128, test::look_for_usb),
                          captured(128, test::find_last_usb_card)};
const Texts play_chime = {"run " + test::chime};

} // namespace

TEST_F(Volume, OfAChannelHasItsControls) {
    struct Case {
        std::string listing;
        const char *playback, *capture;
    };
    const Case cases[] = {
        {"", "Master", "Mic"},
        {control("Master") + control("Capture"), "Master", "Capture"},
        {control("Speaker") + control("Mic"), "Speaker", "Mic"},
        {control("Speaker") + control("Master") + control("Capture") + control("Mic"), "Master",
         "Mic"},
        {control("PCM") + control("Line"), "Master", "Mic"},
        {control("Mic Boost") + control("Capture"), "Master", "Capture"}, // not "Mic"
        {control("Headphone Speaker"), "Master", "Mic"},
    };
    for (const Case& each : cases) {
        for (const Channel channel : {Channel::playback, Channel::capture}) {
            test::ScriptedOs system;
            system.outputs = {"2\n", each.listing, "55\n"};
            EXPECT_EQ(volume(channel), 55);
            const char* const name = channel == Channel::playback ? each.playback : each.capture;
            EXPECT_EQ(system.record, test::joined({find_place("2"),
                                                   {captured(128, test::read_volume("2", name))}}))
                << each.listing;
        }
    }
}

TEST_F(Volume, IsZeroWhereNoneIsTold) {
    for (const auto& [printed, percent] :
         {std::pair{"", 0L}, {"\n", 0L}, {"0\n", 0L}, {"100\n", 100L}, {"7", 7L}, {"x", 0L}}) {
        test::ScriptedOs system;
        system.outputs = {"", "", printed};
        EXPECT_EQ(volume(Channel::playback), percent) << printed;
    }
}

TEST_F(Volume, IsSetOnTheOnboardCardAndStored) {
    {
        test::ScriptedOs system;
        system.outputs = {"0\n", control("Master")};
        EXPECT_TRUE(set_volume(Channel::playback, 55));
        EXPECT_EQ(system.record,
                  test::joined({find_place("0"), test::run(test::write_volume("0", "Master", "55")),
                                no_usb_card, play_chime}));
    }
    EXPECT_EQ(stored_setting(playback_key), "55");
    test::ScriptedOs system;
    system.outputs = {"0\n", control("Capture")};
    EXPECT_TRUE(set_volume(Channel::capture, 40));
    EXPECT_EQ(system.record,
              test::joined({find_place("0"), test::run(test::write_volume("0", "Capture", "40")),
                            no_usb_card})); // no chime
    EXPECT_EQ(stored_setting(capture_key), "40");
    EXPECT_EQ(stored_setting(playback_key), "55");
}

TEST_F(Volume, IsSetOnTheLastUsbCardToo) {
    struct Case {
        Channel channel;
        const char *onboard, *usb;
        Texts end;
    };
    const Case cases[] = {{Channel::playback, "Master", "Speaker", play_chime},
                          {Channel::capture, "Capture", "Mic", {}}};
    for (const Case& each : cases) {
        test::ScriptedOs system;
        system.outputs = {"0\n", control("Master") + control("Capture"), "card 3: USB\n", "3\n"};
        EXPECT_TRUE(set_volume(each.channel, 0));
        EXPECT_EQ(system.record,
                  test::joined({find_place("0"),
                                test::run(test::write_volume("0", each.onboard, "0")), a_usb_card,
                                test::run(test::write_volume("3", each.usb, "0")), each.end}));
    }
}

TEST_F(Volume, OutOfRangeChangesNothing) {
    for (const long percent : {-1L, 101L, 150L, -100L, 4294967296L, -4294967296L}) {
        test::ScriptedOs system;
        EXPECT_FALSE(set_volume(Channel::playback, percent)) << percent;
        EXPECT_EQ(system.record, find_place("0")) << percent;
        EXPECT_EQ(test::stored_document(), "");
    }
    for (const long percent : {0L, 100L}) {
        const test::ScriptedOs system;
        EXPECT_TRUE(set_volume(Channel::playback, percent)) << percent;
        EXPECT_EQ(stored_setting(playback_key), std::to_string(percent));
    }
}

TEST_F(Volume, IsRestoredAsItWasStored) {
    struct Case {
        std::string stored;
        const char* set; ///< null: nothing
    };
    const Case cases[] = {{"", "100"},     {"40", "40"}, {"0", "0"},    {"101", nullptr},
                          {"-1", nullptr}, {"x", "0"},   {"70%", "70"}, {"99999999999", nullptr}};
    for (const Case& each : cases) {
        test::store_items({{"configItem", {{capture_key, each.stored}}}});
        test::ScriptedOs system;
        restore_volume(Channel::capture);
        Texts expected = find_place("0");
        if (each.set != nullptr) {
            expected = test::joined(
                {expected, test::run(test::write_volume("0", "Mic", each.set)), no_usb_card});
        }
        EXPECT_EQ(system.record, expected) << each.stored;
    }
}

TEST_F(Volume, IsToldForBothChannels) {
    test::ScriptedOs system;
    system.outputs = {"0\n", control("Master"), "55\n", "0\n", control("Master"), ""};
    EXPECT_STREQ(json_object_to_json_string_ext(volumes().get(), JSON_C_TO_STRING_PLAIN),
                 R"({"playVolume":"55","micVolume":"0"})");
    EXPECT_EQ(system.record, test::joined({find_place("0"),
                                           {captured(128, test::read_volume("0", "Master"))},
                                           find_place("0"),
                                           {captured(128, test::read_volume("0", "Mic"))}}));
}

TEST_F(Volume, IsSetFromAParameterString) {
    struct Case {
        const char* params;
        std::string playback, capture; ///< what is stored
    };
    const Case cases[] = {
        {"playVolume=55&micVolume=40", "55", "40"},
        {"micVolume=40&playVolume=55", "55", "40"},
        {"playVolume=0", "0", ""},
        {"micVolume=40", "", "40"},
        {"playVolume=150&micVolume=40", "", ""}, // the first one ends it
        {"micVolume=40&playVolume=-1", "", ""},
        {"playVolume=55&micVolume=101", "55", ""},
        {"playVolume=abc", "0", ""},
        {"playVolume=7up", "7", ""},
        {"playVolume=&micVolume=5", "", "5"},
        {"playVolume=99999999999999999999", "", ""},
        {"playVolume=4294967346", "", ""}, // 50 more than an int's range
        {"playVolume=-9999999999999", "", ""},
        {"playvolume=5", "", ""},
        {"", "", ""},
        {"&&==&", "", ""},
    };
    for (const Case& each : cases) {
        test::store_items({});
        const test::ScriptedOs system;
        set_volumes(each.params);
        EXPECT_EQ(stored_setting(playback_key), each.playback) << each.params;
        EXPECT_EQ(stored_setting(capture_key), each.capture) << each.params;
    }
}

TEST_F(Volume, LooksNoFurtherThanAValueOutOfRange) {
    test::ScriptedOs system;
    set_volumes("playVolume=150&micVolume=40");
    EXPECT_EQ(system.record, find_place("0"));
}

} // namespace qvtc::audio
