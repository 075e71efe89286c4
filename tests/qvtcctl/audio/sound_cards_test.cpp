#include "qvtcctl/audio/sound_cards.hpp"

#include "refusals.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::write_file;

constexpr const char* list =
    "**** List of PLAYBACK Hardware Devices ****\n"
    "card 0: PCH [HDA Intel PCH], device 0: ALC236 Analog [ALC236 Analog]\n"
    "  Subdevices: 1/1\n"
    "  Subdevice #0: subdevice #0\n"
    "card 0: PCH [HDA Intel PCH], device 3: HDMI 0 [HDMI 0]\n"
    "card 1: NVidia [HDA NVidia], device 3: HDMI 0 [LG ULTRAWIDE]\n"
    "card 1: NVidia [HDA NVidia], device 7: HDMI 1 [HDMI 1]\n"
    "card 12: Headset [USB [blue] Headset], device 0: USB Audio [USB Audio]\n";

/// A card on one line.
std::string shown(const SoundCard& card) {
    std::string text = std::to_string(card.number) + " " + std::string(title_of(card.kind)) + " " +
                       std::string(name_of(card.kind)) + " <" + card.name + ">";
    for (const std::string& device : card.devices) text += " <" + device + ">";
    return text;
}

std::vector<std::string> shown(const std::vector<SoundCard>& cards) {
    std::vector<std::string> texts;
    for (const SoundCard& card : cards) texts.push_back(shown(card));
    return texts;
}

TEST(QvtcctlSoundCards, AreReadFromTheListOfAlsa) {
    EXPECT_EQ(
        shown(parse_sound_cards(list)),
        (std::vector<std::string>{"0 onboard onboard <HDA Intel PCH> <ALC236 Analog> <HDMI 0>",
                                  "1 HDMI hdmi <HDA NVidia> <HDMI 0> <HDMI 1>",
                                  "12 USB usb <USB [blue] Headset> <USB Audio>"}));
}

TEST(QvtcctlSoundCards, OtherTextsAreNone) {
    const std::string texts[] = {"",
                                 "aplay: device_list:274: no soundcards found...\n",
                                 "card",
                                 "card x: PCH [PCH], device 0: A [A]\n",
                                 "card 1 PCH [PCH], device 0: A [A]\n",
                                 "card 1: PCH PCH, device 0: A A\n",
                                 "card 1: PCH [PCH], device 0\n",
                                 "card 99999999999: PCH [PCH], device 0: A [A]\n",
                                 "card -1: PCH [PCH], device 0: A [A]\n",
                                 std::string(1'000'000, 'c'),
                                 std::string("card \0: [], device ", 19),
                                 "\xff\xfe\n"};
    for (const std::string& text : texts) EXPECT_EQ(parse_sound_cards(text).size(), 0U) << text;
}

TEST(QvtcctlSoundCards, TheDefaultStandsInTheConfiguration) {
    EXPECT_EQ(default_card_in("pcm.x {\n\tcards 3\n}\nctl.duplex {\n\ttype hw\n\tcard 12\n}\n\n"),
              12U);
    EXPECT_EQ(default_card_in("ctl.duplex {\n\tcard 0\n}"), 0U);
    for (const char* const text : {"", "card", "\tcard x\n", "\tcard -1\n", "#card 1\n"})
        EXPECT_EQ(default_card_in(text), std::nullopt) << text;
}

TEST(QvtcctlSoundCards, AreAskedForInEnglish) {
    StandIn aplay("aplay");
    aplay.runs(std::string("[[ $* == -l && $LC_ALL == C ]] || exit 1; cat <<'LIST'\n") + list +
               "LIST");
    EXPECT_EQ(sound_cards().size(), 3U);
    aplay.runs("echo 'no soundcards found...' >&2; exit 1");
    EXPECT_EQ(sound_cards().size(), 0U);
    aplay.runs("exec sleep 100");
    EXPECT_EQ(test::refusal_of([] { sound_cards(); }, ExitCode::not_done),
              "the sound cards could not be listed: aplay did not answer. Check that it is "
              "installed.");
}

TEST(QvtcctlSoundCards, TheTerminalsDefaultIsRead) {
    EXPECT_EQ(default_card(), std::nullopt);
    write_file("/etc/asound.conf", "ctl.duplex {\n\tcard 3\n}\n");
    EXPECT_EQ(default_card(), 3U);
}

TEST(QvtcctlSoundCards, AreFoundByTheirNumber) {
    const std::vector<SoundCard> cards = parse_sound_cards(list);
    EXPECT_EQ(find_card(cards, 12)->number, 12U);
    EXPECT_EQ(find_card(cards, 2), nullptr);
}

} // namespace
} // namespace qvtc::qvtcctl
