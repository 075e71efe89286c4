#include "clients/vnc.hpp"

#include "clients/records.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class VncLaunch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

} // namespace

TEST(VncCommandLine, DeliberatelyGluesTheAddressToTheStoredPassword) {
    struct Case {
        FieldValues values;
        const char* line;
    };
    const Case cases[] = {
        {{}, "vncviewer FullScreen "},
        {{{Field::serverAddress, "10.0.0.5"}}, "vncviewer FullScreen 10.0.0.5"},
        {{{Field::password, "abc"}, {Field::serverAddress, "10.0.0.5"}},
         "vncviewer FullScreen  passwd abc10.0.0.5"},
        {{{Field::password, "abc"}}, "vncviewer FullScreen  passwd abc"},
        {{{Field::password, "abc"}, {Field::serverAddress, "#1"}},
         "vncviewer FullScreen  passwd abc#1"},
        {{{Field::password, "abc "}, {Field::serverAddress, "#1"}},
         "vncviewer FullScreen  passwd abc \\#1"},
        {{{Field::serverAddress, "#1"}}, "vncviewer FullScreen \\#1"},
        {{{Field::password, "c2VjcmV0cw++"}, {Field::serverAddress, "h"}},
         "vncviewer FullScreen  passwd c2VjcmV0cw++h"},
    };
    for (const Case& each : cases) EXPECT_EQ(vnc_command_line(record_of(each.values)), each.line);
}

TEST(VncCommandLine, NoOtherFieldIsUsed) {
    connections::Record record;
    for (std::string& value : record.values) value = "on";
    record[Field::serverAddress] = "h";
    record[Field::password] = "p";
    EXPECT_EQ(vnc_command_line(record), "vncviewer FullScreen  passwd ph");
}

TEST_F(VncLaunch, RunsItsCommandsInOrder) {
    test::store_items({test::record_item(
        "vncItem_id_230", {{"id", "230"}, {"serverAddress", "10.0.0.5"}, {"password", "abc"}})});
    test::ScriptedOs system;
    system.time = 1000;
    system.clock_step = 1;
    EXPECT_TRUE(launch_vnc(230));
    const std::string command =
        "vncviewer FullScreen  passwd abc10.0.0.5 >>/home/root/vnc.log 2>&1 &";
    EXPECT_EQ(system.record, (Texts{"run echo '[1000]start to connect...'>>/home/root/spicec.log",
                                    "run rm -rf /root/.config/spice/known_hosts",
                                    "run killall vncviewer", "run " + command, "thread"}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] spice connection params:" + command});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1001]start to connect...");

    system.record.clear();
    system.outputs = {"a window\n"};
    system.threads.at(0)();
    EXPECT_EQ(system.record.at(1),
              "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep vncviewer");
    EXPECT_EQ(system.record.at(2), "run echo \"0x00000000 connect success\" > "
                                   "/usr/local/vpclient/config/clientstatus");
}

TEST_F(VncLaunch, OfAnAbsentRecordStartsTheClientAllTheSame) {
    test::ScriptedOs system;
    EXPECT_TRUE(launch_vnc(224));
    EXPECT_EQ(system.record.at(3), "run vncviewer FullScreen  >>/home/root/vnc.log 2>&1 &");
}

TEST_F(VncLaunch, WithoutAThreadFailsWhenTheClientRuns) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(launch_vnc(224));
    EXPECT_EQ(system.record.size(), 5U);
    EXPECT_EQ(test::log_lines().back(), "[ERROR] @launchclient thread create fail");
}

TEST_F(VncLaunch, DeliberatelySpeaksOfSpiceAndMarksItsLog) {
    test::ScriptedOs system;
    EXPECT_TRUE(launch_vnc(224));
    EXPECT_TRUE(system.record.at(0).ends_with("start to connect...'>>/home/root/spicec.log"));
    EXPECT_TRUE(test::log_lines().at(0).starts_with("[INFO] spice connection params:vncviewer "));
}

// Another kind's password is base64; this one goes to the viewer as it is stored.
TEST_F(VncLaunch, APasswordThatIsNoBase64IsAsGoodAsAnyOther) {
    test::store_items({test::record_item("vncItem_id_224", {{"password", "a+b=c"}})});
    test::ScriptedOs system;
    EXPECT_TRUE(launch_vnc(224));
    EXPECT_EQ(system.record.at(3),
              "run vncviewer FullScreen  passwd a+b=c >>/home/root/vnc.log 2>&1 &");
}

} // namespace qvtc::clients
