// Display settings on two real screens that are called, and can be switched off, as a terminal's.

#include "desktop.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <json-c/json.h>
#include <qvtcapi/qvtcapi.h>
#include <regex>

// Exported too, for the start sequence and for older front-ends.
extern "C" int display_init();
extern "C" int getcurrentdisp(char* out);
extern "C" int savedispconf_bak(const char* index);

namespace qvtc::test {
namespace {

class Displays : public Journey {
  protected:
    explicit Displays(const std::string& options = "") : Journey("--vga-hdmi" + options) {
        setenv("QVTC_VGA_HDMI", QVTC_VGA_HDMI, 1); // NOLINT(concurrency-mt-unsafe)
        for (const char* const end : {".clone", ".extend"}) {
            write_file(std::string("/etc/xdg/openbox/rc.xml") + end, end);
        }
    }

    const StandIn dmidecode{"dmidecode"}; // or the machine under the tests might be a virtual one
    const StandIn systemctl{"systemctl"};
};

/// On which the X server starts with the complete configuration that the library has written.
class DisplaysOfACompleteConfiguration : public Displays {
  protected:
    DisplaysOfACompleteConfiguration() : Displays(" --config /etc/X11/xorg.conf") {
        const StandIn lspci("lspci");
        savedispconf_bak("2");
    }
};

std::string text_of(json_object* object) {
    std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

/// Where an output's picture lies, as WIDTHxHEIGHT+X+Y.
std::string place_of(const std::string& output) {
    const std::regex line(output + R"( connected (?:primary )?(\d+x\d+\+\d+\+\d+) )");
    const std::string outputs = output_of("xrandr").text;
    std::smatch match;
    return std::regex_search(outputs, match, line) ? match.str(1) : "nowhere";
}

using Places = std::vector<std::string>;
Places places() { return {place_of("VGA1"), place_of("HDMI1")}; }

std::string current_resolution() {
    char resolution[256] = "";
    EXPECT_EQ(getcurrentdisp(resolution), 0);
    return resolution;
}

/// What the X server has in force.
bool server_says(const std::string& text) {
    return output_of("xset q").text.find(text) != std::string::npos;
}

std::vector<std::string> brightnesses() {
    std::vector<std::string> all;
    for (const std::string& line : lines_of(output_of("xrandr --verbose").text)) {
        if (line.find("Brightness: ") != std::string::npos)
            all.push_back(line.substr(line.find(": ") + 2));
    }
    return all;
}

// --- Power saving ----------------------------------------------------------------------------

TEST_F(Displays, PowerSavingReachesTheServerAndComesBackAtTheStart) {
    EXPECT_EQ(qvsetidle("monitorPowerSave=on&monitorPowerSaveMins=10"), 0);
    EXPECT_TRUE(server_says("Standby: 0    Suspend: 0    Off: 600\n  DPMS is Enabled"));
    EXPECT_TRUE(server_says("timeout:  0 "));

    ASSERT_EQ(output_of("xset dpms 1 2 3; xset s 77").status, 0);
    EXPECT_FALSE(server_says("Off: 600"));
    EXPECT_EQ(display_init(), 0);
    EXPECT_TRUE(server_says("Standby: 0    Suspend: 0    Off: 600\n  DPMS is Enabled"));
    EXPECT_TRUE(server_says("timeout:  0 "));

    EXPECT_EQ(qvsetidle("monitorPowerSave=off&monitorPowerSaveMins=10"), 0);
    EXPECT_TRUE(server_says("Standby: 0    Suspend: 0    Off: 0\n"));
    EXPECT_EQ(text_of(qvgetidle()), R"({"monitorPowerSave":"off","monitorPowerSaveMins":"10"})");
}

TEST_F(Displays, SwitchingPowerSavingOnWakesAScreenThatIsOff) {
    ASSERT_EQ(output_of("xset +dpms; xset dpms force off").status, 0);
    ASSERT_TRUE(wait_until([] { return server_says("Monitor is Off"); }));
    EXPECT_EQ(qvsetidle("monitorPowerSave=on&monitorPowerSaveMins=1"), 0);
    EXPECT_TRUE(server_says("Monitor is On"));
    EXPECT_TRUE(server_says("Off: 60\n"));
}

TEST_F(Displays, WithoutASettingTheStartSwitchesPowerSavingOff) {
    ASSERT_EQ(output_of("xset dpms 1000 1000 1000; xset s 77").status, 0);
    EXPECT_EQ(display_init(), 0);
    EXPECT_TRUE(server_says("Standby: 0    Suspend: 0    Off: 0\n"));
    EXPECT_TRUE(server_says("timeout:  0 "));
}

// --- Brightness and outputs ------------------------------------------------------------------

TEST_F(Displays, BrightnessIsThatOfEveryOutput) {
    EXPECT_EQ(text_of(qvgetmonitor()), R"({"brightness":"100"})");
    const struct {
        const char* params;
        const char* on_the_screens;
        const char* told;
    } cases[] = {
        {"brightness=80", "0.80", R"({"brightness":"80"})"},
        {"brightness=5", "0.20", R"({"brightness":"20"})"},
        {"brightness=150", "1.0", R"({"brightness":"100"})"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(qvsetmonitor(each.params), 0);
        EXPECT_EQ(brightnesses(), (std::vector<std::string>(2, each.on_the_screens)));
        EXPECT_EQ(text_of(qvgetmonitor()), each.told);
    }
}

TEST_F(Displays, BothOutputsAreFound) {
    EXPECT_EQ(qvgetmonitornum(), 2);
    EXPECT_EQ(qvissupportextendscreen(), 1);
}

// --- Resolutions -----------------------------------------------------------------------------

TEST_F(Displays, TheCurrentResolutionIsTheFirstOutputs) {
    ASSERT_EQ(output_of("xrandr --noprimary --output VGA1 --mode 1024x768").status, 0);
    EXPECT_EQ(current_resolution(), "1024x768");
    ASSERT_EQ(output_of("xrandr --output VGA1 --off").status, 0);
    EXPECT_EQ(current_resolution(), "1280x1024"); // HDMI1's
    ASSERT_EQ(output_of("xrandr --output VGA1 --auto --output HDMI1 --off").status, 0);
    ASSERT_EQ(output_of("xrandr --output VGA1 --primary").status, 0);
    EXPECT_EQ(current_resolution(), "");
}

TEST_F(Displays, AResolutionIsChangedKeptAndReverted) {
    EXPECT_EQ(qvsetdispconf("1024x768"), 0);
    EXPECT_EQ(places(), (Places{"1024x768+0+0", "1024x768+1024+0"}));
    EXPECT_EQ(systemctl.calls(), (StandIn::Calls{{"--force", "reboot"}}));
    EXPECT_EQ(qvapplydispconf(), 0);

    EXPECT_EQ(qvsetdispconf("1280x720"), 0);
    EXPECT_EQ(places(), (Places{"1280x720+0+0", "1280x720+1280+0"}));
    EXPECT_EQ(qvisdispchanged(), 1);
    EXPECT_EQ(text_of(qvgetdispconf()), R"({"res":"2"})");

    EXPECT_EQ(qvrestoredispconf(), 0);
    EXPECT_EQ(places(), (Places{"1024x768+0+0", "1024x768+1024+0"}));
    EXPECT_EQ(qvisdispchanged(), 0);
    EXPECT_EQ(text_of(qvgetdispconf()), R"({"res":"1"})");
    EXPECT_EQ(read_file("/var/lib/ralo/res"), "1024x768\n");

    EXPECT_EQ(qvsetdispconf("auto"), 0);
    EXPECT_EQ(places(), (Places{"1280x1024+0+0", "1280x1024+1280+0"}));
}

TEST_F(DisplaysOfACompleteConfiguration, ShowItsModeOnBothAndNeverSwitchOff) {
    EXPECT_EQ(places(), (Places{"1280x720+1280+0", "1280x720+0+0"}));
    EXPECT_NE(output_of("xrandr").text.find("1280x720_60.00  59.86*"), std::string::npos);
    EXPECT_TRUE(server_says("Standby: 0    Suspend: 0    Off: 0\n"));
    EXPECT_TRUE(server_says("timeout:  0 "));
}

// --- Modes and order -------------------------------------------------------------------------

TEST_F(Displays, ScreensAreClonedExtendedAndSplitVertically) {
    EXPECT_EQ(qvsetdispconf("res=1&force=1"), 0);
    EXPECT_EQ(qvsetdisplaymode("displayMode=clone"), 0);
    EXPECT_EQ(places(), (Places{"1024x768+0+0", "1024x768+0+0"}));
    EXPECT_EQ(text_of(qvdisplaymode()), R"({"displayMode":"clone"})");
    EXPECT_EQ(read_file("/etc/xdg/openbox/rc.xml"), ".clone");

    EXPECT_EQ(qvsetdisplaymode("displayMode=extendverticalscreen"), 0);
    EXPECT_EQ(places(), (Places{"1024x768+0+0", "1024x768+0+768"}));
    EXPECT_EQ(text_of(qvsplitverticallymode()), R"({"splitVerticallyMode":"hdmi"})");

    EXPECT_EQ(qvsetdisplaymode("displayMode=extend"), 0);
    EXPECT_EQ(places(), (Places{"1024x768+0+0", "1024x768+1024+0"}));
    EXPECT_EQ(read_file("/etc/xdg/openbox/rc.xml"), ".extend");
}

TEST_F(Displays, TheOrderOfTheScreensIsReversed) {
    EXPECT_EQ(qvsetdisplayorder("displayOrder=Reverse"), 0);
    EXPECT_EQ(places(), (Places{"1280x1024+1280+0", "1280x1024+0+0"}));
    EXPECT_EQ(qvsetdisplayorder("displayOrder=Positive"), 0);
    EXPECT_EQ(places(), (Places{"1280x1024+0+0", "1280x1024+1280+0"}));
}

} // namespace
} // namespace qvtc::test
