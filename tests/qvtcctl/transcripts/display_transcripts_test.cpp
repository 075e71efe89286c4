// qvtcctl as its user sees it, against the real library: the screens.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

constexpr const char* settings = "/home/root/vpclientData.xml";

/// A terminal with two screens that take what they are told.
class QvtcctlDisplay : public testing::Test {
  protected:
    QvtcctlDisplay() {
        xrandr.runs("case $* in\n"
                    "*--brightness*) echo $4 >/tmp/brightness ;;\n"
                    "--verbose) echo \"Brightness: $(cat /tmp/brightness 2>/dev/null || echo 1.0)\""
                    " ;;\n"
                    "*) echo 'VGA1 connected primary 1280x1024+0+0 (normal) 0mm x 0mm'\n"
                    "   echo 'HDMI1 connected (normal) 0mm x 0mm' ;;\n"
                    "esac");
        qvplugin.runs("if [[ $1 == 0 ]]; then cat /tmp/value 2>/dev/null; "
                      "else printf '%s' \"$3\" >/tmp/value; fi");
        for (const char* const end : {".clone", ".extend"}) {
            test::write_file(std::string("/etc/xdg/openbox/rc.xml") + end, end);
        }
    }

    StandIn script{"/var/lib/ralo/display.sh"};
    StandIn systemctl{"systemctl"};
    StandIn dmidecode{"dmidecode"};
    StandIn qvplugin{"qvplugin"};
    StandIn xrandr{"xrandr"};
};

} // namespace

TEST_F(QvtcctlDisplay, AResolutionIsChangedKeptAndReverted) {
    Transcript()
        .run("qvtcctl display show")
        .run("qvtcctl display set 1024x768 --keep --yes")
        .run("qvtcctl display list")
        .run("qvtcctl display set 1920x1080 --yes")
        .run("qvtcctl display show")
        .run("qvtcctl display keep")
        .run("qvtcctl display keep")
        .run("qvtcctl display set 1280x800 --yes")
        .run("qvtcctl display revert")
        .run("qvtcctl display revert")
        .run("qvtcctl display set 1920x1080 --yes")
        .run("qvtcctl display set 800x600 --yes")
        .expect("display_resolution");
    EXPECT_EQ(systemctl.calls(), StandIn::Calls(5, {"--force", "reboot"}));
    EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "auto\n");
}

TEST_F(QvtcctlDisplay, TheFirstChangeOfAllCanBeReverted) {
    Transcript()
        .run("qvtcctl display set 1920x1080 --yes")
        .run("qvtcctl display revert")
        .run("qvtcctl display show")
        .expect("display_first_change");
    EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "auto\n");
}

TEST_F(QvtcctlDisplay, MoreThanTwoScreensAreCountedAndNamed) {
    xrandr.runs("echo 'D0 connected primary 1024x768+0+0 (normal) 0mm x 0mm'\n"
                "echo 'D1 connected 1024x768+0+0 (normal) 0mm x 0mm'\n"
                "echo 'D2 connected 1024x768+2048+0 (normal) 0mm x 0mm'\n"
                "echo 'D3 connected 1024x768+3072+0 (normal) 0mm x 0mm'\n");
    Transcript()
        .run("qvtcctl display screens")
        .run("qvtcctl display mode clone")
        .run("qvtcctl display mode clone --json")
        .run("qvtcctl display mode vertical")
        .expect("display_four_screens");
}

TEST_F(QvtcctlDisplay, ConsentIsAskedForBeforeTheRestart) {
    Transcript()
        .run_with_answer("qvtcctl display set 1024x768", "n")
        .run("qvtcctl display set 1024x768")
        .run("qvtcctl display show")
        .run_with_answer("qvtcctl display set 1024x768", "y")
        .run("qvtcctl display show")
        .expect("display_consent");
    EXPECT_EQ(systemctl.calls().size(), 1U);
}

TEST_F(QvtcctlDisplay, ModeOrderBrightnessAndRefreshAreShownAndSet) {
    Transcript()
        .run("qvtcctl display mode")
        .run("qvtcctl display mode clone")
        .run("qvtcctl display mode vertical")
        .run("qvtcctl display mode extend")
        .run("qvtcctl display order")
        .run("qvtcctl display order reverse")
        .run("qvtcctl display order")
        .run("qvtcctl display order usual")
        .run("qvtcctl display brightness")
        .run("qvtcctl display brightness 57")
        .run("qvtcctl display brightness")
        .run("qvtcctl display screens")
        .run("qvtcctl display refresh")
        .run("qvtcctl display refresh '{\"rate\": 60}'")
        .run("qvtcctl display refresh")
        .expect("display");
}

TEST_F(QvtcctlDisplay, EveryVerbAnswersInJson) {
    Transcript()
        .run("qvtcctl display show --json")
        .run("qvtcctl display list --json")
        .run("qvtcctl display screens --json")
        .run("qvtcctl display set 800x600 --yes --json")
        .run("qvtcctl display set 1024x768 --yes --keep --json")
        .run("qvtcctl display set auto --yes --json")
        .run("qvtcctl display show --json")
        .run("qvtcctl display revert --json")
        .run("qvtcctl display keep --json")
        .run("qvtcctl display mode clone --json")
        .run("qvtcctl display order --json")
        .run("qvtcctl display brightness 80 --json")
        .run("qvtcctl display refresh --json")
        .run("qvtcctl display refresh '{}' --json")
        .run("qvtcctl display set 1x1 --json")
        .expect("display_json");
}

TEST_F(QvtcctlDisplay, RefusedValuesChangeNothing) {
    Transcript transcript;
    transcript.run("qvtcctl display")
        .run("qvtcctl display set")
        .run("qvtcctl display set 1024x786 --yes")
        .run("qvtcctl display set '' --yes")
        .run("qvtcctl display set 2560x1440 --yes")
        .run("qvtcctl display set \"\\$(touch /tmp/owned)\" --yes")
        .run("qvtcctl display mode single")
        .run("qvtcctl display mode extent")
        .run("qvtcctl display order Reverse")
        .run("qvtcctl display brightness 19")
        .run("qvtcctl display brightness 101")
        .run("qvtcctl display brightness 80%")
        .run("qvtcctl display brightness -- -5")
        .run("qvtcctl display brightness 50.5")
        .run("qvtcctl display refresh 60")
        .run("qvtcctl display refresh '{rate'")
        .run("qvtcctl display refresh $'{\"a\":\"\\xff\"}'")
        .run("qvtcctl display refresh \"{\\\"a\\\":\\\"$(head -c 10232 /dev/zero | tr '\\0' "
             "x)\\\"}\"")
        .run("qvtcctl display refresh '{}' twice");
    transcript.expect("display_refused");
    EXPECT_FALSE(test::file_exists(settings));
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
    EXPECT_FALSE(test::file_exists("/tmp/value"));
    EXPECT_EQ(script.calls(), StandIn::Calls{});
    EXPECT_EQ(systemctl.calls(), StandIn::Calls{});
}

TEST_F(QvtcctlDisplay, TheLongestRefreshTextIsTaken) {
    Transcript()
        .run("qvtcctl display refresh \"{\\\"a\\\":\\\"$(head -c 10231 /dev/zero | tr '\\0' "
             "x)\\\"}\" "
             "| wc -c")
        .expect("display_refresh_longest");
    EXPECT_EQ(test::read_file("/tmp/value").size(), 13652U);
}

TEST_F(QvtcctlDisplay, AVirtualMachineIsLeftAlone) {
    dmidecode.prints("VirtualBox\n");
    Transcript()
        .run("qvtcctl display set 1024x768 --yes")
        .run("qvtcctl display mode clone")
        .expect("display_virtual");
    EXPECT_FALSE(test::file_exists(settings));
    EXPECT_EQ(systemctl.calls(), StandIn::Calls{});
}

TEST_F(QvtcctlDisplay, WithoutAnXServerItSaysSo) {
    xrandr.runs("echo \"Can't open display :0.0\" >&2; exit 1");
    Transcript()
        .run("qvtcctl display show")
        .run("qvtcctl display show --json")
        .run("qvtcctl display brightness")
        .run("qvtcctl display brightness --json")
        .run("qvtcctl display brightness 80")
        .run("qvtcctl display screens")
        .run("qvtcctl display screens --json")
        .run("qvtcctl display mode extend")
        .expect("display_no_screen");
}

TEST_F(QvtcctlDisplay, WhatDoesNotTakeIsToldApart) {
    xrandr.runs("echo 'Brightness: 0.35'");
    qvplugin.runs("true");
    test::write_file(settings, "<Other/>");
    Transcript()
        .run("qvtcctl display set 1024x768 --yes")
        .run("qvtcctl display brightness 80")
        .run("qvtcctl display refresh '{}'")
        .run("rm -rf /etc/X11 && touch /etc/X11 && qvtcctl display order reverse")
        .run("qvtcctl display mode clone")
        .expect("display_not_taken");
}

} // namespace qvtc::qvtcctl
