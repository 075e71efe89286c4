#include "display/modes.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

using test::operator+;
using test::Texts;

class Modes : public test::DisplayTerminal {
  protected:
    Modes() {
        test::write_file("/etc/xdg/openbox/rc.xml", "before\n");
        test::write_file("/etc/xdg/openbox/rc.xml.clone", "cloned\n");
        test::write_file("/etc/xdg/openbox/rc.xml.extend", "extended\n");
    }

    static std::string window_manager() { return test::read_file("/etc/xdg/openbox/rc.xml"); }

    const test::StandIn script{"/var/lib/ralo/display.sh"};
};

const Texts clone_commands = {"touch /etc/X11/clone", "rm -rf /etc/xdg/openbox/rc.xml",
                              "cp /etc/xdg/openbox/rc.xml.clone /etc/xdg/openbox/rc.xml",
                              "rm -rf /home/root/hdmi"};
const Texts extend_begin = {"rm -rf /etc/X11/clone", "rm -rf /etc/xdg/openbox/rc.xml",
                            "cp /etc/xdg/openbox/rc.xml.extend /etc/xdg/openbox/rc.xml"};
const Texts extend_commands = extend_begin + Texts{"rm -rf /home/root/hdmi"};
const Texts vertical_commands = extend_begin + Texts{"touch /home/root/hdmi"};

} // namespace

// --- Setting the mode ------------------------------------------------------------------------

TEST_F(Modes, CloneMarksItAndTellsTheWindowManager) {
    test::write_file("/home/root/hdmi", "");
    EXPECT_EQ(setdisplaymode("displayMode=clone"), 1);
    EXPECT_EQ(test::recorded_commands(), clone_commands + test::written("auto"));
    EXPECT_TRUE(test::file_exists("/etc/X11/clone"));
    EXPECT_FALSE(test::file_exists("/home/root/hdmi"));
    EXPECT_EQ(window_manager(), "cloned\n");
    EXPECT_EQ(test::read_file("/etc/X11/xorg.conf"), test::golden_file("minimal.conf"));
}

TEST_F(Modes, EveryOtherValueExtends) {
    for (const char* const params :
         {"displayMode=", "displayMode=extend", "displayMode=Clone", "displayMode=clone2",
          "displayMode= clone", "displayMode=single", "displayMode=0", "x=1&displayMode="}) {
        test::write_file("/etc/X11/clone", "");
        test::write_file("/home/root/hdmi", "");
        test::forget_commands();
        EXPECT_EQ(setdisplaymode(params), 1);
        EXPECT_EQ(test::recorded_commands(), extend_commands + test::written("auto")) << params;
        EXPECT_FALSE(test::file_exists("/etc/X11/clone"));
        EXPECT_FALSE(test::file_exists("/home/root/hdmi"));
        EXPECT_EQ(window_manager(), "extended\n");
    }
}

TEST_F(Modes, AVerticalSplitIsMarked) {
    for (const char* const params :
         {"displayMode=extendverticalscreen", "displayMode=xextendverticalscreenx"}) {
        test::write_file("/etc/X11/clone", "");
        std::filesystem::remove("/home/root/hdmi");
        test::forget_commands();
        EXPECT_EQ(setdisplaymode(params), 1);
        EXPECT_EQ(test::recorded_commands(), vertical_commands + test::written("auto"));
        EXPECT_TRUE(test::file_exists("/home/root/hdmi"));
        EXPECT_FALSE(test::file_exists("/etc/X11/clone"));
    }
}

TEST_F(Modes, WithoutTheKeyNothingHappens) {
    test::write_file("/etc/X11/clone", "");
    for (const char* const params :
         {"", "clone", "displayMode", "mode=clone", "displaymode=clone"}) {
        EXPECT_EQ(setdisplaymode(params), 1);
    }
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_TRUE(test::file_exists("/etc/X11/clone"));
    EXPECT_EQ(script.calls(), test::StandIn::Calls{});
}

TEST_F(Modes, AMissingTemplateLeavesTheWindowManagerWithoutAFile) {
    std::filesystem::remove("/etc/xdg/openbox/rc.xml.clone");
    test::capture_stderr([] { EXPECT_EQ(setdisplaymode("displayMode=clone"), 1); });
    EXPECT_EQ(test::recorded_commands(), clone_commands + test::written("auto"));
    EXPECT_FALSE(test::file_exists("/etc/xdg/openbox/rc.xml"));
}

TEST_F(Modes, AModeGoesOnWithTheAppliedResolution) {
    const std::pair<const char*, const char*> cases[] = {
        {"1", "1024x768"},
        {"5", "1920x1080"},
        {"9", "1280x800"},
        {"10", "auto"},
        {"0", "auto"},
        {"1'", "1024x768"},
        {"5'x", "1920x1080"},
        {"10'", "auto"},
        {"12", "auto"},
        {"5x", "auto"},
        {"", "auto"},
        {"auto", "auto"},
        {" 5", "auto"},
        {"'5'", "auto"},
        {"55", "auto"},
        {"101", "auto"},
        {"$(touch /tmp/owned)", "auto"},
    };
    for (const auto& [stored, name] : cases) {
        store_settings({{test::applied_key, stored}, {test::requested_key, "3"}});
        test::forget_commands();
        EXPECT_EQ(setdisplaymode("displayMode=extend"), 1);
        EXPECT_EQ(test::recorded_commands(), extend_commands + test::written(name)) << stored;
        EXPECT_EQ(test::stored_setting(test::applied_key), stored);
    }
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

TEST_F(Modes, AVirtualMachineIsLeftAsItIs) {
    const char* const ask = "dmidecode -s system-product-name";
    for (const char* const product : {"VirtualBox\n", "VMware Virtual Platform\n"}) {
        test::StandIn dmidecode("dmidecode");
        dmidecode.prints(product);
        test::forget_commands();
        EXPECT_EQ(qvsetdisplaymode("displayMode=clone"), 0);
        EXPECT_EQ(test::recorded_command_details(),
                  (std::vector<test::RecordedCommand>{{ask, true}}));
        EXPECT_EQ(dmidecode.calls(), (test::StandIn::Calls{{"-s", "system-product-name"}}));
    }
    for (const char* const product : {"", "RX16\n", "virtual\n"}) {
        test::StandIn dmidecode("dmidecode");
        dmidecode.prints(product);
        test::forget_commands();
        EXPECT_EQ(qvsetdisplaymode("displayMode=clone"), 0);
        EXPECT_EQ(test::recorded_commands(), Texts{ask} + clone_commands + test::written("auto"));
    }
}

// --- The mode that is set --------------------------------------------------------------------

TEST_F(Modes, TheMarkersTellTheMode) {
    EXPECT_EQ(test::text_of(qvdisplaymode()), R"({"displayMode":"extend"})");
    EXPECT_EQ(test::text_of(qvsplitverticallymode()), R"({"splitVerticallyMode":""})");
    test::write_file("/home/root/vga", "");
    EXPECT_EQ(test::text_of(qvdisplaymode()), R"({"displayMode":"extend"})");
    EXPECT_EQ(test::text_of(qvsplitverticallymode()), R"({"splitVerticallyMode":"vga"})");
    test::write_file("/home/root/hdmi", "");
    EXPECT_EQ(test::text_of(qvdisplaymode()), R"({"displayMode":"extendverticalscreen"})");
    EXPECT_EQ(test::text_of(qvsplitverticallymode()), R"({"splitVerticallyMode":"hdmi"})");
    test::write_file("/etc/X11/clone", "");
    EXPECT_EQ(test::text_of(qvdisplaymode()), R"({"displayMode":"clone"})");
    EXPECT_EQ(test::text_of(qvsplitverticallymode()), R"({"splitVerticallyMode":"hdmi"})");
    EXPECT_EQ(test::recorded_commands(), Texts{});
}

TEST_F(Modes, AMarkerCountsByBeingThere) {
    std::filesystem::create_directory("/etc/X11/clone");
    std::filesystem::permissions("/etc/X11/clone", std::filesystem::perms::none);
    EXPECT_EQ(test::text_of(qvdisplaymode()), R"({"displayMode":"clone"})");
}

// --- The order -------------------------------------------------------------------------------

TEST_F(Modes, TheOrderIsMarkedAndTheScriptRun) {
    for (int (*const set)(const char*) : {qvsetdisplayorder, setdisplayorder}) {
        test::forget_commands();
        EXPECT_EQ(test::text_of(qvgetdisplayorder()), R"({"displayOrder":"Positive"})");
        EXPECT_EQ(set("displayOrder=Reverse"), 0);
        EXPECT_EQ(test::text_of(qvgetdisplayorder()), R"({"displayOrder":"Reverse"})");
        EXPECT_EQ(set("displayOrder=Positive"), 0);
        EXPECT_EQ(test::text_of(qvgetdisplayorder()), R"({"displayOrder":"Positive"})");
        EXPECT_EQ(test::recorded_commands(), (Texts{"touch /etc/X11/reverse", test::run_script,
                                                    "rm -f /etc/X11/reverse", test::run_script}));
    }
}

TEST_F(Modes, OnlyATextWithTheWordReverses) {
    for (const char* const params :
         {"displayOrder=R", "displayOrder=", "displayOrder=reverse", "displayOrder=Rev"}) {
        test::write_file("/etc/X11/reverse", "");
        test::forget_commands();
        EXPECT_EQ(qvsetdisplayorder(params), 0);
        EXPECT_FALSE(test::file_exists("/etc/X11/reverse")) << params;
        EXPECT_EQ(test::recorded_commands(), (Texts{"rm -f /etc/X11/reverse", test::run_script}));
    }
    EXPECT_EQ(qvsetdisplayorder("displayOrder=xReversex"), 0);
    EXPECT_TRUE(test::file_exists("/etc/X11/reverse"));
}

TEST_F(Modes, WithoutTheKeyTheOrderStaysAndTheScriptRuns) {
    test::write_file("/etc/X11/reverse", "");
    for (const char* const params : {"", "Reverse", "displayOrder", "order=Positive"}) {
        test::forget_commands();
        EXPECT_EQ(qvsetdisplayorder(params), 0);
        EXPECT_EQ(test::recorded_commands(), Texts{test::run_script}) << params;
        EXPECT_TRUE(test::file_exists("/etc/X11/reverse"));
    }
}

TEST_F(Modes, AModeThatCannotBeReadChangesNothing) {
    test::write_file("/etc/X11/clone", "");
    for (const std::string& params :
         {std::string("x&displayMode=extend"), std::string("&x=on&displayMode=extend"),
          "x=" + std::string(300, 'x') + "&displayMode=extend"}) {
        EXPECT_EQ(setdisplaymode(params.c_str()), 1);
        EXPECT_EQ(test::recorded_commands(), Texts{}) << params;
        EXPECT_TRUE(test::file_exists("/etc/X11/clone"));
    }
}

TEST_F(Modes, AnOrderThatCannotBeReadLeavesTheMarker) {
    test::write_file("/etc/X11/reverse", "");
    for (const char* const params : {"x&displayOrder=Reverse", "&displayOrder=Positive"}) {
        test::forget_commands();
        EXPECT_EQ(setdisplayorder(params), 0);
        EXPECT_EQ(test::recorded_commands(), Texts{test::run_script}) << params;
        EXPECT_TRUE(test::file_exists("/etc/X11/reverse"));
    }
}

// --- Outputs ---------------------------------------------------------------------------------

TEST_F(Modes, ExtendingTakesAVgaAndAnHdmiOutput) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("VGA1 connected\nHDMI1 disconnected\n");
    EXPECT_EQ(qvissupportextendscreen(), 1);
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{{"xrandr |grep VGA", true},
                                                  {"xrandr |grep HDMI", true}}));
    xrandr.prints("VGA1 connected\nDP1 connected\n");
    EXPECT_EQ(qvissupportextendscreen(), -1);
    test::forget_commands();
    xrandr.prints("HDMI1 connected\nHDMI2 connected\n");
    EXPECT_EQ(qvissupportextendscreen(), -1);
    EXPECT_EQ(test::recorded_commands(), Texts{"xrandr |grep VGA"});
    xrandr.prints("");
    EXPECT_EQ(qvissupportextendscreen(), -1);
}

TEST_F(Modes, TheOlderQuestionDeliberatelyLooksForAMisspeltName) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("VGA1 connected\nHDMI1 connected\n");
    EXPECT_EQ(check_display_device_interface(), -1);
    EXPECT_EQ(test::recorded_commands(), (Texts{"xrandr |grep VGA", "xrandr |grep HMDI"}));
    xrandr.prints("VGA1 connected\nHMDI and HDMI1 connected\n");
    EXPECT_EQ(check_display_device_interface(), 0);
    xrandr.prints("VGA1 connected\nHMDI1 connected\n");
    EXPECT_EQ(check_display_device_interface(), -1);
    xrandr.prints("HMDI and HDMI1 connected\n");
    EXPECT_EQ(check_display_device_interface(), -1);
}

TEST(ModesOutputs, AreAskedForWithinTheirLimit) {
    test::ScriptedOs system;
    system.outputs = {"VGA1 connected", "HDMI1 connected"};
    EXPECT_TRUE(has_vga_and_hdmi());
    system.outputs = {"2\n"};
    EXPECT_EQ(connected_screens(), 2);
    EXPECT_EQ(system.record,
              (Texts{"capture 1024 xrandr |grep VGA", "capture 1024 xrandr |grep HDMI",
                     "capture 1024 xrandr |grep -v disconnected|grep connected|wc -l"}));
}

TEST_F(Modes, ConnectedScreensAreCountedUpToTwo) {
    const std::pair<const char*, int> cases[] = {
        {"", 0},
        {"VGA1 disconnected\n", 0},
        {"VGA1 disconnected\nHDMI1 connected\n", 1},
        {"VGA1 connected\nHDMI1 connected\n", 2},
        {"VGA1 connected\nHDMI1 connected\nDP1 connected\n", 2},
    };
    for (const auto& [outputs, count] : cases) {
        test::StandIn xrandr("xrandr");
        xrandr.prints(outputs);
        test::forget_commands();
        EXPECT_EQ(qvgetmonitornum(), count) << outputs;
        EXPECT_EQ(test::recorded_command_details(),
                  (std::vector<test::RecordedCommand>{
                      {"xrandr |grep -v disconnected|grep connected|wc -l", true}}));
    }
    test::ScriptedOs nothing;
    EXPECT_EQ(qvgetmonitornum(), 0);
}

} // namespace qvtc::display
