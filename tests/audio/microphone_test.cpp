#include "audio/microphone.hpp"

#include "audio/sound_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::audio {

namespace {

using test::captured;
using test::Texts;

class Microphone : public test::SoundTerminal {};

const std::string card_1 = "\t\tsysfs.path = \"/devices/pci0000:00/usb1/1-3/1-3:1.2/sound/card1\"";
const std::string webcam = "\t\tdevice.form_factor = \"webcam\"";

/// A listing of a webcam with that line as its index, long enough to be looked at.
std::string webcam_with(const std::string& index, const std::string& path = card_1) {
    return "1 source(s) available.\n" + index + "\n\tname: <" + std::string(100, 'n') + ">\n" +
           path + "\n" + webcam + "\n";
}

std::string card_command(const std::string& line) { return "CARD='" + line + "';echo ${CARD##*/}"; }

std::string ask_most(const std::string& card) {
    return "amixer -c " + card +
           " cget name='Mic Capture Volume'|grep type|grep max|awk -F ',' {print'$5'}|"
           "awk -F '=' {print'$2'}";
}

std::string set_most(const std::string& card, const std::string& most) {
    return "amixer -c " + card + " cset name='Mic Capture Volume' " + most + " >/dev/null 2>&1";
}

std::string choose(const std::string& index) {
    return "pacmd set-default-source " + index + " >/dev/null 2>&1";
}

const std::string hostile_path = "\t\tsysfs.path = \"/a'; touch /tmp/owned; '$(touch "
                                 "/tmp/owned)`touch /tmp/owned`/sound/card$\"";

} // namespace

TEST(WebcamSearch, FindsTheIndexOfTheFirstWebcam) {
    struct Case {
        std::string listing, index;
        bool found = true;
        std::size_t paths = 0;
    };
    const Case cases[] = {
        {"    index: 7\n" + webcam, "7"},
        {"  * index: 7\n" + webcam + "\n", "7"},
        {"    index: 7\n    index: 8\n" + webcam + "\n    index: 9\n" + webcam, "8"},
        {"    index: 7\n" + card_1 + "\n" + card_1 + "\n" + webcam + "\n" + card_1, "7", true, 2},
        {webcam + "\n    index: 7\n", "7", false},         // no index yet
        {webcam + "\n    index: 7\n" + webcam, "7"},       // then there is one
        {"    index: 7\n" + card_1 + "\n", "7", false, 1}, // another source
        {"    index: 7\n\t\tdevice.form_factor = \"headset\"", "7", false},
        {"    index: 7\n\t\tdevice.form_factor = \"webcam", "7", false},
        {"    index:\n" + webcam, "", false},
        {"    index: \n" + webcam, "", false},
        {"    index:7\n" + webcam, "", false},
        {"    index: 7\n    index: \n" + webcam, "7"},
        {"a: index: 7\n" + webcam, "7"},
        {"index: \xff\n" + webcam, "\xff"},
        {"", "", false},
        {"\n\n\n", "", false},
    };
    for (const Case& each : cases) {
        const WebcamSearch search = find_webcam(each.listing);
        EXPECT_EQ(search.found, each.found) << each.listing;
        EXPECT_EQ(search.index, each.index) << each.listing;
        EXPECT_EQ(search.paths, Texts(each.paths, card_1)) << each.listing;
    }
}

TEST(WebcamSearch, DeliberatelyKeepsOnlyTheLastDigitOfAnIndex) {
    EXPECT_EQ(find_webcam("    index: 12\n" + webcam).index, "2");
    EXPECT_EQ(find_webcam("    index: 12 \n" + webcam).index, " ");
    EXPECT_EQ(find_webcam("    index: " + std::string(100'000, '1') + "0\n" + webcam).index, "0");
}

TEST(WebcamSearch, FindsTheWebcamOfARealListing) {
    const WebcamSearch search =
        find_webcam(test::read_file(QVTC_CAPTURES_DIRECTORY "/pulseaudio/webcam.txt"));
    EXPECT_TRUE(search.found);
    EXPECT_EQ(search.index, "1");
    EXPECT_EQ(search.paths, Texts{"\t\tsysfs.path = \"/devices/pci0000:00/0000:00:14.0/usb1/1-3/"
                                  "1-3:1.2/sound/card1\""});
}

TEST(CardIn, IsTheNumberBehindTheWord) {
    const std::pair<const char*, const char*> cases[] = {
        {"card1\"\n", "1"}, {"card12\"\n", "12"},     {"card\"\n", "\""}, {"card", ""},
        {"", ""},           {"hwC1\"\n", "hwC1\"\n"}, {"3", "3"},         {"soundcard2card3", "2"},
        {"card12", "12"},   {"cardx2", "x"},
    };
    for (const auto& [end, card] : cases) EXPECT_EQ(card_in(end), card) << end;
}

TEST_F(Microphone, OfAWebcamBecomesTheDefaultAtFullVolume) {
    test::ScriptedOs system;
    system.outputs = {webcam_with("    index: 7"), "card1\"\n", "6144\n"};
    prefer_webcam_microphone();
    EXPECT_EQ(system.record, (Texts{captured(1'024'000, test::list_sources),
                                    captured(64, card_command(card_1)), "run " + choose("7"),
                                    captured(64, ask_most("1")), "run " + set_most("1", "6144")}));
}

TEST_F(Microphone, DeliberatelyNamesAnotherSourceThanTheTwelfth) {
    test::ScriptedOs system;
    system.outputs = {webcam_with("    index: 12"), ""};
    prefer_webcam_microphone();
    EXPECT_EQ(system.record.back(), "run " + choose("2"));
}

TEST_F(Microphone, DeliberatelyLeavesTheVolumeOfACardThatIsNoSingleCharacter) {
    for (const char* const end : {"card12\"\n", "hwC10\"\n", "", "card", "\n\n"}) {
        test::ScriptedOs system;
        system.outputs = {webcam_with("    index: 7"), end, "6144\n"};
        prefer_webcam_microphone();
        EXPECT_EQ(system.record.back(), "run " + choose("7")) << end;
    }
}

TEST_F(Microphone, StaysAsItIsWithoutAWebcam) {
    const std::string other = "    index: 3\n" + card_1 + "\n" + std::string(100, 'n');
    test::ScriptedOs system;
    system.outputs = {other, "card1\"\n"};
    prefer_webcam_microphone();
    EXPECT_EQ(system.record,
              (Texts{captured(1'024'000, test::list_sources), captured(64, card_command(card_1))}));
}

TEST_F(Microphone, IsLookedForFrom101CharactersOn) {
    const std::string start = "    index: 7\n" + webcam + "\n";
    for (const std::size_t size : {start.size(), std::size_t{100}, std::size_t{101}}) {
        test::ScriptedOs system;
        system.outputs = {start + std::string(size - start.size(), '\n')};
        prefer_webcam_microphone();
        EXPECT_EQ(system.record.size(), size == 101 ? 2U : 1U) << size;
    }
}

TEST_F(Microphone, WithoutAKnownMostKeepsItsVolume) {
    {
        test::ScriptedOs system;
        system.outputs = {webcam_with("    index: 7"), "card1\"\n", ""};
        prefer_webcam_microphone();
        EXPECT_EQ(system.record.back(), captured(64, ask_most("1")));
    }
    // What is printed loses its last character, whatever that is.
    test::ScriptedOs system;
    system.outputs = {webcam_with("    index: 7"), "card1\"\n", "87"};
    prefer_webcam_microphone();
    EXPECT_EQ(system.record.back(), "run " + set_most("1", "8"));
}

TEST_F(Microphone, IsFoundThroughTheShell) {
    pacmd.prints({webcam_with("    index: 7"), ""});
    amixer.prints({"numid=1,iface=MIXER,name='Mic Capture Volume'\n"
                   "  ; type=INTEGER,access=rw---R--,values=1,min=0,max=6144,step=0\n"
                   "  : values=100\n",
                   ""});
    prefer_webcam_microphone();
    EXPECT_EQ(test::recorded_commands(),
              (Texts{test::list_sources, card_command(card_1), choose("7"), ask_most("1"),
                     set_most("1", "6144")}));
    EXPECT_EQ(pacmd.calls(), (test::StandIn::Calls{{"list-sources"}, {"set-default-source", "7"}}));
    EXPECT_EQ(amixer.calls(),
              (test::StandIn::Calls{{"-c", "1", "cget", "name=Mic Capture Volume"},
                                    {"-c", "1", "cset", "name=Mic Capture Volume", "6144"}}));
}

TEST_F(Microphone, TakesNothingOfAListingForShellSyntax) {
    for (const std::string index : {";", "`", "$", "'", "\"", "*", "&", "|", ">", "~", "\xff"}) {
        pacmd.forget_calls();
        pacmd.prints({webcam_with("    index: touch /tmp/owned" + index, hostile_path), ""});
        prefer_webcam_microphone();
        EXPECT_EQ(pacmd.calls(),
                  (test::StandIn::Calls{{"list-sources"}, {"set-default-source", index}}));
        EXPECT_EQ(amixer.calls().back(),
                  (test::StandIn::Arguments{"-c", "$", "cget", "name=Mic Capture Volume"}));
    }
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

TEST_F(Microphone, TakesNothingOfACardsMostForShellSyntax) {
    pacmd.prints({webcam_with("    index: 7"), ""});
    amixer.prints(
        {"; type=INTEGER,a,b,c,max=$(touch /tmp/owned)`touch /tmp/owned`;x>/tmp/owned\n", ""});
    prefer_webcam_microphone();
    EXPECT_EQ(amixer.calls().back(),
              (test::StandIn::Arguments{"-c", "1", "cset", "name=Mic Capture Volume", "$(touch",
                                        "/tmp/owned)`touch", "/tmp/owned`;x>/tmp/owned"}));
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

TEST_F(Microphone, GivesTheShellNoLineThatItCannotTake) {
    const std::string endless = "\t\tsysfs.path = \"/" + std::string(150'000, '\'') + "/card1\"";
    pacmd.prints({webcam_with("    index: 7", endless), ""});
    prefer_webcam_microphone();
    EXPECT_EQ(test::recorded_commands(), (Texts{test::list_sources, choose("7")}));
}

} // namespace qvtc::audio
