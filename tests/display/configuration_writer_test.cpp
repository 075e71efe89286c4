#include "display/configuration_writer.hpp"

#include "core/text.hpp"
#include "display/exports.hpp"
#include "display_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace qvtc::display {

namespace {

using test::operator+;
using test::Texts;

class ConfigurationWriter : public test::DisplayTerminal {};

constexpr const char* xorg_conf = "/etc/X11/xorg.conf";
constexpr const char* backup = "run cp -dpR /etc/X11/xorg.conf /tmp/backup_xorg.conf";
constexpr const char* ask_card = "capture 256 lspci |grep VGA";
constexpr const char* ask_processor =
    "capture 256 cat /proc/cpuinfo |grep \"model name\" |sed -n 1p";
constexpr const char* ask_other_mode =
    "capture 1024 xrandr --verbose|grep +preferred |grep -v current |awk -F' ' '{printf $1}'";
constexpr const char* ask_mode =
    "capture 1024 xrandr --verbose|grep +preferred |awk -F' ' '{printf $1}'";
constexpr const char* ask_dp1 = "capture 256 DISPLAY=:0.0 xrandr |grep  connected|grep DP1";
constexpr const char* ask_hdmi1 = "capture 256 DISPLAY=:0.0 xrandr |grep  connected|grep HDMI1";

std::string replies_to(const char* asked) {
    return std::string(asked).substr(std::string("capture 256 ").size());
}

/// The written file, for a processor of the mapping DP1 and HDMI1.
std::string file_for(const std::string& golden, const std::string& mode) {
    return replace_all(test::golden_file(golden), "1920x1080_60.00\"\n\tEndSub",
                       mode + "\"\n\tEndSub");
}

struct Choice {
    const char* index;
    const char* name; ///< for the script
    const char* mode; ///< of the complete file; null for the automatic one
};

constexpr Choice choices[] = {
    {"", "auto", "800x600_60.00"},
    {"0", "auto", "800x600_60.00"},
    {"1", "1024x768", "1024x768_60.00"},
    {"2", "1280x720", "1280x720_60.00"},
    {"3", "1440x900", "1440x900_60.00"},
    {"4", "1600x1200", "1600x1200_60.00"},
    {"5", "1920x1080", "1920x1080_60.00"},
    {"6", "1280x1024", "1280x1024_60.00"},
    {"7", "1366x768", "1366x768_60.00"},
    {"8", "1600x900", "1600x900_60.00"},
    {"9", "1280x800", "800x600_60.00"},
    {"10", "auto", nullptr},
    {"11", "auto", "800x600_60.00"},
    {"12", "auto", "800x600_60.00"},
    {"13", "auto", "800x600_60.00"},
    {"abc", "auto", "800x600_60.00"},
    {"$(touch /tmp/owned)", "auto", "800x600_60.00"},
};

} // namespace

// --- The usual one ---------------------------------------------------------------------------

TEST_F(ConfigurationWriter, TellsTheScriptAndWritesTheMinimalFileForEveryIndex) {
    for (const Choice& choice : choices) {
        test::StandIn script("/var/lib/ralo/display.sh");
        test::write_file(xorg_conf, "before\n");
        test::forget_commands();
        EXPECT_EQ(savedispconf(choice.index), 0);
        EXPECT_EQ(test::recorded_commands(), test::written(choice.name)) << choice.index;
        EXPECT_EQ(test::read_file("/var/lib/ralo/res"), std::string(choice.name) + "\n");
        EXPECT_EQ(test::read_file(xorg_conf), test::golden_file("minimal.conf"));
        EXPECT_EQ(script.calls(), test::StandIn::Calls{{}});
    }
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

TEST_F(ConfigurationWriter, WaitsForTheScriptAndGivesItsStatus) {
    test::StandIn script("/var/lib/ralo/display.sh");
    script.runs("cat /var/lib/ralo/res /etc/X11/xorg.conf >/tmp/seen; echo noise; exit 7");
    EXPECT_EQ(test::capture_stdout([] { EXPECT_EQ(write_configuration("5"), 7 << 8); }), "");
    EXPECT_EQ(test::read_file("/tmp/seen"), "1920x1080\n" + test::golden_file("minimal.conf"));
}

TEST_F(ConfigurationWriter, WithoutAScriptStillWritesBothFiles) {
    std::filesystem::remove("/var/lib/ralo/display.sh");
    EXPECT_EQ(write_configuration("2"), 127 << 8);
    EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "1280x720\n");
    EXPECT_EQ(test::read_file(xorg_conf), test::golden_file("minimal.conf"));
}

TEST_F(ConfigurationWriter, LeavesANewFileReadableForTheServer) {
    const test::StandIn script("/var/lib/ralo/display.sh");
    write_configuration("1");
    struct stat status {};
    ASSERT_EQ(stat(xorg_conf, &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(ConfigurationWriter, RunsTheScriptAlsoWhenTheFileCannotBeWritten) {
    const test::StandIn script("/var/lib/ralo/display.sh");
    std::filesystem::create_directories("/etc/X11/xorg.conf/in/the/way");
    EXPECT_EQ(write_configuration("1"), 0);
    EXPECT_EQ(script.calls().size(), 1U);
    ASSERT_EQ(test::log_lines().size(), 1U);
    EXPECT_TRUE(test::log_lines()[0].starts_with("[ERROR] @write_lines /etc/X11/xorg.conf: "));
}

// --- The complete one ------------------------------------------------------------------------

TEST_F(ConfigurationWriter, WritesTheCompleteFileForEveryIndex) {
    for (const Choice& choice : choices) {
        if (choice.mode == nullptr) continue;
        test::ScriptedOs system;
        system.replies[replies_to(ask_processor)] = "model name : J3355\n";
        EXPECT_EQ(savedispconf_bak(choice.index), 0);
        EXPECT_EQ(system.record, (Texts{backup, ask_card, ask_processor})) << choice.index;
        EXPECT_EQ(test::read_file(xorg_conf), file_for("dual.conf", choice.mode)) << choice.index;

        system.record.clear();
        system.files = {"/etc/X11/clone"};
        EXPECT_EQ(savedispconf_bak(choice.index), 0);
        EXPECT_EQ(system.record, (Texts{backup, ask_card, ask_processor})) << choice.index;
        EXPECT_EQ(test::read_file(xorg_conf), file_for("clone.conf", choice.mode)) << choice.index;
    }
}

TEST_F(ConfigurationWriter, AutomaticAsksForThePreferredModeThatIsNotInUseFirst) {
    test::ScriptedOs system;
    system.outputs = {"2560x1440", "", "model name : J3355\n"};
    write_static_configuration("10");
    EXPECT_EQ(system.record, (Texts{backup, ask_other_mode, ask_card, ask_processor}));
    EXPECT_EQ(test::read_file(xorg_conf), file_for("dual.conf", "2560x1440"));
}

TEST_F(ConfigurationWriter, AutomaticAsksForAnyPreferredModeThen) {
    test::ScriptedOs system;
    system.outputs = {"", "1280x800", "", "model name : J3355\n"};
    write_static_configuration("10");
    EXPECT_EQ(system.record, (Texts{backup, ask_other_mode, ask_mode, ask_card, ask_processor}));
    EXPECT_EQ(test::read_file(xorg_conf), file_for("dual.conf", "1280x800"));
}

TEST_F(ConfigurationWriter, DeliberatelySeveralPreferredModesRunTogether) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("  1920x1080 (0x47) 148.500MHz +HSync +VSync *current +preferred\n"
                  "  1280x1024 (0x48) 108.000MHz +HSync +VSync +preferred\n"
                  "  1600x1200 (0x49) 161.000MHz +HSync +VSync +preferred\n");
    const test::StandIn lspci("lspci");
    EXPECT_EQ(savedispconf_bak("10"), 0);
    EXPECT_TRUE(
        contains(test::read_file(xorg_conf), "\t\tModes           \"1280x10241600x1200\"\n"));
}

TEST_F(ConfigurationWriter, AutomaticWithoutAPreferredModeHasNoModesLine) {
    test::ScriptedOs system;
    system.replies[replies_to(ask_processor)] = "model name : J3355\n";
    write_static_configuration("10");
    EXPECT_EQ(test::read_file(xorg_conf),
              replace_all(test::golden_file("dual.conf"),
                          "\t\tModes           \"1920x1080_60.00\"\n", ""));
}

TEST_F(ConfigurationWriter, DeliberatelyAutomaticCloneLeavesNothingButTheFlags) {
    test::write_file("/etc/X11/clone", "");
    test::write_file(xorg_conf, "before\n");
    test::StandIn xrandr("xrandr");
    xrandr.prints("  1280x1024 (0x48) 108.000MHz +HSync +VSync +preferred\n");
    const test::StandIn lspci("lspci");
    EXPECT_EQ(savedispconf_bak("10"), 0);
    EXPECT_EQ(test::read_file(xorg_conf), test::golden_file("flags_only.conf"));
    EXPECT_EQ(test::read_file("/tmp/backup_xorg.conf"), "before\n");
    EXPECT_EQ(lspci.calls(), test::StandIn::Calls{});
}

TEST_F(ConfigurationWriter, TheDriverFollowsTheCard) {
    const std::pair<const char*, const char*> cases[] = {
        {"01:00.0 VGA compatible controller: ATI Radeon HD\n", "Radeon"},
        {"00:0f.0 VGA compatible controller: vmware SVGA\n", "vmware"},
        {"00:02.0 VGA compatible controller: Intel HD\n", "intel"},
        {"", "intel"},
    };
    for (const auto& [card, driver] : cases) {
        for (const bool dual : {true, false}) {
            test::ScriptedOs system;
            if (!dual) system.files = {"/etc/X11/clone"};
            system.replies[replies_to(ask_card)] = card;
            system.replies[replies_to(ask_processor)] = "model name : J3355\n";
            write_static_configuration("5");
            EXPECT_EQ(
                test::read_file(xorg_conf),
                replace_all(test::golden_file(dual ? "dual.conf" : "clone.conf"), "intel", driver));
        }
    }
}

TEST_F(ConfigurationWriter, EveryProcessorGetsItsOutputs) {
    struct Case {
        const char* processor;
        std::set<std::string> files;
        std::map<std::string, std::string> replies;
        const char* first;
        const char* second;
        Texts asked;
    };
    const std::string dp1 = replies_to(ask_dp1);
    const std::string hdmi1 = replies_to(ask_hdmi1);
    const std::set<std::string> notebook = {"/home/root/n5095_notebook"};
    const Case cases[] = {
        {"J3160", {}, {}, "DP2", "HDMI1", {}},
        {"J3355", {}, {}, "DP1", "HDMI1", {}},
        {"N3160", {}, {}, "HDMI3", "HDMI1", {}},
        {"N3160 J3160", {}, {}, "DP2", "HDMI1", {}},
        {"N5095", notebook, {{dp1, "DP1 connected\n"}}, "eDP1", "HDMI1", {}},
        {"N5095", {}, {{dp1, "DP1 connected\n"}}, "DP1", "HDMI2", {ask_dp1}},
        {"N5095", {}, {{dp1, "\n"}}, "HDMI-2", "HDMI-1", {ask_dp1, ask_hdmi1}},
        {"N5095", {}, {{hdmi1, "\n"}}, "HDMI-2", "HDMI-1", {ask_dp1, ask_hdmi1}},
        {"N5095", {}, {{hdmi1, "HDMI1 connected\n"}}, "HDMI2", "HDMI1", {ask_dp1, ask_hdmi1}},
        {"i5-7200U", notebook, {}, "VGA1", "HDMI1", {}},
        {"", {}, {}, "VGA1", "HDMI1", {}},
    };
    for (const Case& each : cases) {
        test::ScriptedOs system;
        system.files = each.files;
        system.replies = each.replies;
        system.replies[replies_to(ask_processor)] =
            *each.processor == '\0' ? "" : textf("model name : %s\n", each.processor);
        write_static_configuration("5");
        EXPECT_EQ(system.record, (Texts{backup, ask_card, ask_processor} + each.asked));
        std::string expected = replace_all(test::golden_file("dual.conf"), "monitor-HDMI1",
                                           std::string("monitor-") + each.second);
        expected = replace_all(expected, "monitor-DP1", std::string("monitor-") + each.first);
        EXPECT_EQ(test::read_file(xorg_conf), expected) << each.processor;
    }
}

TEST_F(ConfigurationWriter, AProcessorOfOneCharacterIsUnknown) {
    test::ScriptedOs system;
    system.replies[replies_to(ask_processor)] = "\n";
    write_static_configuration("5");
    EXPECT_TRUE(contains(test::read_file(xorg_conf), "\"monitor-VGA1\"\t  \"Monitor-0\""));
}

TEST_F(ConfigurationWriter, KeepsTheFormerFileAndRunsNoScript) {
    const test::StandIn script("/var/lib/ralo/display.sh");
    const test::StandIn lspci("lspci");
    test::write_file(xorg_conf, "before\n");
    EXPECT_EQ(savedispconf_bak("5"), 0);
    EXPECT_EQ(test::read_file("/tmp/backup_xorg.conf"), "before\n");
    EXPECT_EQ(script.calls(), test::StandIn::Calls{});
    EXPECT_FALSE(test::file_exists("/var/lib/ralo/res"));
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{
                  {"cp -dpR /etc/X11/xorg.conf /tmp/backup_xorg.conf", false},
                  {"lspci |grep VGA", true},
                  {"cat /proc/cpuinfo |grep \"model name\" |sed -n 1p", true}}));
}

} // namespace qvtc::display
