#include "audio/cards.hpp"

#include "audio/sound_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::audio {

namespace {

using test::captured;
using test::listed_card;
using test::Texts;

class Cards : public test::SoundTerminal {};

const std::string analog = listed_card(0, "HDA Intel PCH", "ALC236 Analog");
const std::string analog_2 = listed_card(2, "HDA Intel PCH", "ALC236 Analog");
const std::string hdmi = listed_card(1, "HDA Intel HDMI", "HDMI 0");
const std::string headset = listed_card(3, "USB Headset", "USB Audio");
const std::string speaker = listed_card(12, "USB Speaker", "USB Audio");

} // namespace

TEST(CardCommands, AskForTheOnboardCard) {
    test::ScriptedOs system;
    system.outputs = {"2\n5\n", "12\n", "", "no number\n"};
    EXPECT_EQ(onboard_card(), 2);
    EXPECT_EQ(onboard_card(), 12);
    EXPECT_EQ(onboard_card(), 0);
    EXPECT_EQ(onboard_card(), 0);
    EXPECT_EQ(system.record, Texts(4, captured(10240, test::find_onboard_card)));
}

TEST(CardCommands, AskForTheFirstUsbCard) {
    test::ScriptedOs system;
    system.outputs = {"1\n", ""};
    EXPECT_EQ(first_usb_card(), 1);
    EXPECT_EQ(first_usb_card(), std::nullopt);
    EXPECT_EQ(system.record, Texts(2, captured(10240, test::find_first_usb_card)));
}

TEST(CardCommands, AskForTheLastUsbCardOnlyIfThereIsOne) {
    test::ScriptedOs system;
    system.outputs = {"card 1: USB\n", "1\n"};
    EXPECT_EQ(last_usb_card(), 1);
    EXPECT_EQ(last_usb_card(), std::nullopt);
    EXPECT_EQ(system.record,
              (Texts{captured(128, test::look_for_usb), captured(128, test::find_last_usb_card),
                     captured(128, test::look_for_usb)}));
}

TEST(CardCommands, AskForHdmi) {
    test::ScriptedOs system;
    system.outputs = {"\n", ""};
    EXPECT_TRUE(hdmi_device_present());
    EXPECT_FALSE(hdmi_device_present());
    EXPECT_EQ(system.record, Texts(2, captured(1024, test::look_for_hdmi)));
}

TEST_F(Cards, AreFoundInTheListOfAlsa) {
    struct Case {
        std::string list;
        int onboard;
        std::optional<int> first_usb, last_usb;
        bool hdmi;
    };
    const Case cases[] = {
        {"", 0, {}, {}, false},
        {analog, 0, {}, {}, false},
        {hdmi, 0, {}, {}, true},
        {hdmi + analog_2, 2, {}, {}, true},
        {analog_2 + analog, 2, {}, {}, false},
        {headset, 0, 3, 3, false},
        {hdmi + analog_2 + headset + speaker, 2, 3, 12, true},
        {speaker + headset, 0, 12, 3, false},
    };
    for (const Case& each : cases) {
        aplay.prints(test::list_head + each.list);
        EXPECT_EQ(onboard_card(), each.onboard) << each.list;
        EXPECT_EQ(first_usb_card(), each.first_usb) << each.list;
        EXPECT_EQ(last_usb_card(), each.last_usb) << each.list;
        EXPECT_EQ(hdmi_device_present(), each.hdmi) << each.list;
    }
}

} // namespace qvtc::audio
