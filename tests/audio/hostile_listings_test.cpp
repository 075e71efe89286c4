// Whatever the programs of the sound print, and whatever a front-end asks for.
#include "audio/exports.hpp"
#include "audio/sound_terminal.hpp"

#include <gtest/gtest.h>
#include <json-c/json.h>
#include <thread>

namespace qvtc::test {

namespace {

class HostileListings : public SoundTerminal {
  protected:
    void everything_prints(const std::string& text) {
        for (StandIn* const program : {&aplay, &amixer, &pacmd}) program->prints(text);
    }
};

/// The names by which the listings are searched, one after the other, without end of line.
const std::string all_marks = "card card 1: USB HDMI Simple mixer control 'Master' [50%] [on] "
                              "index: 7 sysfs.path device.form_factor = \"webcam\" ; type=INTEGER,"
                              "a,b,c,max=5 Mic Playback Switch Capture Volume ";

std::string repeated(const std::string& text, std::size_t size) {
    std::string all;
    while (all.size() < size) all += text;
    return all;
}

Texts hostile_listings() {
    std::string binary;
    for (int i = 0; i < 70'000; ++i) binary += static_cast<char>(i * 31 % 256);
    return {
        all_marks,
        repeated("x", 100'000),
        repeated(all_marks, 100'000),
        repeated("card 99999999999999999999: [USB] [HDMI] [99999999999999999999%] [on]\n", 20'000),
        repeated("card -5: [USB] [-5%] [off]\n", 20'000),
        repeated(all_marks, 500) + std::string(1, '\0') + repeated(all_marks, 500),
        std::string(5'000, '\0'),
        binary,
        repeated("index: $(touch /tmp/owned)`\n", 10'000) + all_marks + "\n",
        repeated("'Simple mixer control '", 1'100'000),
        repeated("\n", 1'100'000),
        "card $(touch /tmp/owned): USB\ncard `touch /tmp/owned`: [x]\n"};
}

/// All that can be asked; gives what the getter of volumes gave.
json_object* ask_everything() {
    json_object* const volumes = qvgetvolume();
    const int hdmi = qvishdmiaudioenable();
    EXPECT_TRUE(hdmi == 0 || hdmi == 1);
    for (const unsigned channel : {0U, 1U}) {
        long value = 0;
        EXPECT_EQ(audio_volume(0, channel, &value), 0);
    }
    return volumes;
}

} // namespace

TEST_F(HostileListings, NeverStopAGetter) {
    for (const std::string& listing : hostile_listings()) {
        everything_prints(listing);
        json_object* const volumes = ask_everything();
        EXPECT_EQ(json_object_object_length(volumes), 2) << listing.substr(0, 80);
        json_object_put(volumes);
    }
    EXPECT_FALSE(file_exists("/tmp/owned"));
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(HostileListings, NeverStopASetter) {
    for (const std::string& listing : hostile_listings()) {
        everything_prints(listing);
        EXPECT_EQ(qvsetvolume("playVolume=55&micVolume=40"), 0);
        EXPECT_EQ(stored_setting("tc_config_param_14_1"), "40");
        EXPECT_EQ(volumeinit(), 0);
        EXPECT_TRUE(file_exists("/etc/asound.conf")) << listing.substr(0, 80);
    }
    EXPECT_FALSE(file_exists("/tmp/owned"));
}

TEST_F(HostileListings, GiveOnlyNumbersToTheCommands) {
    aplay.prints("card 1; touch /tmp/owned: USB\ncard $(touch /tmp/owned): [x]\n");
    EXPECT_EQ(qvsetvolume("micVolume=40"), 0);
    EXPECT_EQ(recorded_commands(), joined({{find_onboard_card, list_controls("0")},
                                           write_volume("0", "Mic", "40"),
                                           {look_for_usb, find_last_usb_card},
                                           write_volume("1", "Mic", "40")}));
    EXPECT_FALSE(file_exists("/tmp/owned"));
}

TEST_F(HostileListings, SettersTakeAnyText) {
    const Texts values = {"'; touch /tmp/owned; '",
                          "$(touch /tmp/owned)",
                          "`touch /tmp/owned`",
                          "\"",
                          "5\n6",
                          "%s%n",
                          "\xff\xfe",
                          std::string(10'239, '1'),
                          std::string(10'240, '9'),
                          std::string(100'000, 'x')};
    for (const std::string& value : values) {
        for (const std::string name : {"playVolume=", "micVolume=", "x=", ""})
            EXPECT_EQ(qvsetvolume((name + value).c_str()), 0);
        EXPECT_EQ(qvsetvolume(("playVolume=" + value + "&micVolume=" + value).c_str()), 0);
    }
    EXPECT_FALSE(file_exists("/tmp/owned"));
    for (const std::string& command : recorded_commands())
        EXPECT_LT(command.size(), 200U) << command;
}

TEST_F(HostileListings, TwoThreadsMayAskAtOnce) {
    aplay.prints(list_head + listed_card(0, "HDA Intel HDMI", "HDMI 0") +
                 listed_card(2, "HDA Intel PCH", "ALC236 Analog"));
    amixer.prints("Simple mixer control 'Master',0\n  Mono: Playback 20 [23%] [on]\n");
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([] {
            for (int turn = 0; turn < 5; ++turn) {
                json_object* const volumes = ask_everything();
                EXPECT_STREQ(json_object_to_json_string_ext(volumes, JSON_C_TO_STRING_PLAIN),
                             R"({"playVolume":"23","micVolume":"23"})");
                json_object_put(volumes);
            }
        });
    }
    threads.emplace_back([] {
        for (int turn = 0; turn < 5; ++turn) EXPECT_EQ(qvsetvolume("micVolume=40"), 0);
    });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(stored_setting("tc_config_param_14_1"), "40");
}

} // namespace qvtc::test
