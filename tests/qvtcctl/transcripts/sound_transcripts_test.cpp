// The sound, as a person sees it who types the commands: on described cards, through the real
// aplay and amixer.
#include "support/sound_cards/sound_cards.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::SoundCards;
using test::StandIn;
using test::Transcript;

class QvtcctlSound : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* const program : {"/usr/bin/aplay", "/usr/bin/amixer"})
            QVTC_NEED(test::file_exists(program), std::string(program) + " is not installed");
        std::filesystem::remove("/etc/asound.conf");
        pulseaudio.runs("cp /bin/sleep /tmp/pulseaudio; /tmp/pulseaudio 100 >/dev/null 2>&1 &");
    }

    SoundCards cards;
    StandIn killall{"killall"};
    StandIn pacmd{"pacmd"};
    StandIn pulseaudio{"/usr/bin/pulseaudio"};
};

TEST_F(QvtcctlSound, Volume) {
    cards.put_in(0, test::onboard_analog_card);
    cards.put_in(1, test::usb_headset);
    Transcript transcript;
    transcript.run("qvtcctl volume")
        .run("qvtcctl volume --playback 55")
        .run("qvtcctl volume --playback 0 --capture 100")
        .run("qvtcctl volume --json")
        .run("qvtcctl volume --capture 1 --json")
        .run("qvtcctl volume")
        .run("amixer -c 1 cget name='Mic Capture Volume' | tail -n 1");
    transcript.expect("volume");
}

TEST_F(QvtcctlSound, VolumesThatAreRefused) {
    const StandIn amixer("/usr/bin/amixer");
    Transcript transcript;
    transcript.run("qvtcctl volume --playback 101")
        .run("qvtcctl volume --playback 50 --capture -1")
        .run("qvtcctl volume --playback ''")
        .run("qvtcctl volume --capture 5%")
        .run("qvtcctl volume --capture loud --json")
        .run("qvtcctl volume --playback")
        .run("qvtcctl volume 50")
        .run("qvtcctl volume --help");
    transcript.expect("volume_refused");
    EXPECT_EQ(amixer.calls(), StandIn::Calls{});
}

TEST_F(QvtcctlSound, AVolumeThatNoCardTakes) {
    cards.put_in(0, test::hdmi_card);
    cards.put_in(1, "id|PCH\nname|PCH\ndevice|0|Line\nswitch|Line Playback Switch|1|0\n");
    Transcript transcript;
    transcript.run("qvtcctl volume --playback 55")
        .run("qvtcctl volume --playback 55 --json")
        .run("qvtcctl volume --playback 0");
    cards.put_in(1, test::usb_headset);
    transcript.run("qvtcctl volume --playback 55");
    transcript.expect("volume_not_taken");
}

TEST_F(QvtcctlSound, AVolumeThatNoCardReportsIsUnknown) {
    Transcript transcript;
    transcript.run("qvtcctl volume").run("qvtcctl volume --json");
    cards.put_in(0, "id|PCH\nname|PCH\ndevice|0|Line\nswitch|Line Playback Switch|1|0\n");
    transcript.run("qvtcctl volume").run("qvtcctl volume --capture 40").expect("volume_unknown");
}

TEST_F(QvtcctlSound, AVolumeThatIsNotStoredIsNotClaimedToBe) {
    cards.put_in(0, test::onboard_analog_card);
    Transcript transcript;
    transcript.run("qvtcctl volume --playback 55")
        .run("mount --bind /home/root /home/root && mount -o remount,bind,ro /home/root")
        .run("qvtcctl volume --playback 20");
    transcript.expect("volume_not_stored");
}

TEST_F(QvtcctlSound, Cards) {
    Transcript transcript;
    transcript.run("qvtcctl sound show").run("qvtcctl sound show --json");
    cards.put_in(0, test::hdmi_card);
    cards.put_in(1, test::onboard_analog_card);
    cards.put_in(12, test::usb_headset);
    transcript.run("qvtcctl sound show")
        .run("qvtcctl sound configure 12 --yes")
        .run("qvtcctl sound show")
        .run("touch /home/root/enable_hdmi_audio")
        .run("qvtcctl sound show --json");
    cards.take_out(12);
    transcript.run("qvtcctl sound show")
        .run("rm /usr/local/bin/aplay; mv /usr/bin/aplay /tmp")
        .run("qvtcctl sound show");
    transcript.run("mv /tmp/aplay /usr/bin");
    transcript.expect("sound_show");
}

TEST_F(QvtcctlSound, Configure) {
    cards.put_in(0, test::hdmi_card);
    cards.put_in(1, test::onboard_analog_card);
    Transcript transcript;
    transcript.run("qvtcctl sound configure 1").run("qvtcctl sound configure 1 --json");
    EXPECT_EQ(killall.calls(), StandIn::Calls{});
    transcript.run("qvtcctl sound configure 1 --yes")
        .run("grep 'card\\|hw' /etc/asound.conf")
        .run("qvtcctl sound configure 0 --yes --json")
        .run("qvtcctl sound configure 2 --yes")
        .run("qvtcctl sound configure first")
        .run("qvtcctl sound configure")
        .run("qvtcctl sound");
    EXPECT_EQ(killall.calls().size(), 6U);
    // As where the disk is full: the draft cannot be written.
    transcript.run("mkdir /etc/asound.conf.bak; qvtcctl sound configure 1 --yes")
        .run("rmdir /etc/asound.conf.bak; pkill -x pulseaudio");
    pulseaudio.runs("exit 1");
    transcript.run("qvtcctl sound configure 1 --yes");
    cards.take_out(0);
    cards.take_out(1);
    transcript.run("qvtcctl sound configure 1 --yes");
    transcript.expect("sound_configure");
}

TEST_F(QvtcctlSound, ConfigureAsksOnATerminal) {
    cards.put_in(1, test::onboard_analog_card);
    Transcript transcript;
    transcript.run_on_terminal("echo n | script -qec 'qvtcctl sound configure 1' /dev/null");
    EXPECT_EQ(killall.calls(), StandIn::Calls{});
    transcript.run_on_terminal("echo y | script -qec 'qvtcctl sound configure 1' /dev/null");
    EXPECT_EQ(killall.calls().size(), 3U);
    transcript.expect("sound_asked");
}

TEST_F(QvtcctlSound, OnlyRootAndOnlyATerminal) {
    cards.put_in(1, test::onboard_analog_card);
    Transcript transcript;
    for (const std::string command :
         {"volume --playback 5", "sound show", "sound configure 1 --yes"}) {
        transcript.run("mv /home/root /home/away; qvtcctl " + command +
                       "; status=$?; mv /home/away /home/root; exit $status");
    }
    transcript.expect("sound_no_terminal");
    EXPECT_EQ(killall.calls(), StandIn::Calls{});
}

} // namespace
} // namespace qvtc::qvtcctl
