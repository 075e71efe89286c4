#include "api/start.hpp"

#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::api {

namespace {

using Texts = std::vector<std::string>;
namespace keys = store::keys;

const Texts power_saving_off_commands = {"xset dpms 0 0 0 >/dev/null 2>&1",
                                         "xset s off >/dev/null 2>&1"};

const Texts looks_at_logs = {
    "wc -c /home/root/system.log | awk '$1'", "wc -c /home/root/freerdp.log | awk '$1'",
    "wc -c /home/root/spicec.log | awk '$1'", "wc -c /home/root/qvservice.log | awk '$1'"};

const Texts pictures = {
    "rm -rf /usr/local/vpclient/bin/image/background-*.png",
    "rm -rf /usr/local/vpclient/bin/image/connection-list-titlebar-*.png",
    "cp -f /var/lib/ralo/image/base/background-*.png /usr/local/vpclient/bin/image/",
    "cp -f /var/lib/ralo/image/base/connection-list-titlebar-*.png /usr/local/vpclient/bin/image/"};

const std::string open_server = "x11vnc -display :0 -forever -bg -rfbport 5900 >/dev/null 2>&1 &";
const std::string guarded_server = "x11vnc -display :0 -forever -bg -rfbport 5900 -rfbauth "
                                   "/etc/x11vnc.pass >/dev/null 2>&1 &";
const std::string outputs = "DISPLAY=:0.0 xrandr |grep -w connected|awk '{print$1}'";

const std::string question = "ps -ef|grep 'x11vnc'|grep -v grep|wc -l";

Texts operator+(Texts texts, const Texts& more) {
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

const Texts power_saving_off = looks_at_logs + power_saving_off_commands;

/// A terminal whose programs of screen, sound and remote view only note their calls.
class Start : public testing::Test {
  protected:
    static Texts commands_of_start() {
        test::forget_commands();
        start();
        return test::recorded_commands();
    }

    test::StandIn xset_{"xset"};
    test::StandIn xrandr_{"xrandr"};
    test::StandIn server_{"x11vnc"};
    test::StandIn set_default_sink_{"/usr/bin/set_default_sink"};
    test::StandIn aplay_{"aplay"};
};

} // namespace

TEST(RemoteViewCommand, GoesByTheSetting) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"{'vnc':'on','password':''}", open_server},
        {"{'vnc':'on','password':'x'}", guarded_server},
        {"{'vnc':'on','other':1}", guarded_server},
        {"{'vnc':'off','password':''}", std::nullopt},
        {"", std::nullopt},
        {"{\"vnc\":\"on\",\"password\":\"\"}", std::nullopt},
        {"{'vnc':'on',123", std::nullopt},    // 15 characters
        {"{'vnc':'on',1234", guarded_server}, // 16
    };
    for (const auto& [setting, command] : cases) EXPECT_EQ(remote_view_command(setting), command);
}

TEST_F(Start, DoesTheLeastWhenNothingIsSet) {
    EXPECT_EQ(commands_of_start(), power_saving_off + pictures);
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] init api"});
}

TEST_F(Start, AppliesTheStoredBrightness) {
    xrandr_.prints("VGA1 connected 1280x1024+0+0\nHDMI1 connected 1280x1024+0+0\n");
    store::store_setting(keys::brightness, "80");
    EXPECT_EQ(commands_of_start(),
              (power_saving_off +
               Texts{outputs, "DISPLAY=:0.0 xrandr --output VGA1 --brightness 0.800000",
                     "DISPLAY=:0.0 xrandr --output HDMI1 --brightness 0.800000"} +
               pictures));
    EXPECT_EQ(store::setting(keys::brightness), "80");
}

TEST_F(Start, AppliesTheStoredPowerSaving) {
    store::store_setting(keys::monitor_power_saving, "monitorPowerSave=on&monitorPowerSaveMins=10");
    EXPECT_EQ(commands_of_start(),
              (looks_at_logs +
               Texts{"xset s off >/dev/null 2>&1", "xset dpms force on >/dev/null 2>&1",
                     "xset dpms 0 0 600 >/dev/null 2>&1"} +
               pictures));
}

TEST_F(Start, ServesTheScreenWithoutAPassword) {
    store::store_setting(keys::remote_view, "{'vnc':'on','password':''}");
    EXPECT_EQ(commands_of_start(), (power_saving_off + Texts{question, open_server} + pictures));
}

TEST_F(Start, ServesTheScreenWithAPassword) {
    store::store_setting(keys::remote_view, "{'vnc':'on','password':'1'}");
    EXPECT_EQ(commands_of_start(), (power_saving_off + Texts{question, guarded_server} + pictures));
}

TEST_F(Start, LeavesARunningServerAlone) {
    server_.keeps_running();
    store::store_setting(keys::remote_view, "{'vnc':'on','password':''}");
    start();
    ASSERT_TRUE(test::wait_until([&] { return server_.calls().size() == 1; }));
    EXPECT_EQ(commands_of_start(), (power_saving_off + Texts{question} + pictures));
    EXPECT_EQ(server_.calls().size(), 1U);
}

TEST_F(Start, SwitchesHdmiSoundOnWhereItsMarkerIs) {
    test::write_file("/home/root/enable_hdmi_audio", "");
    const Texts commands = commands_of_start();
    EXPECT_EQ(commands,
              (Texts{"aplay -l|grep card|grep -v USB|grep -v HDMI|awk -F ':' {print'$1'}|awk -F "
                     "' ' {print'$2'}",
                     "/usr/bin/set_default_sink 1 >/dev/null 2>&1 &"} +
               power_saving_off + pictures));
    EXPECT_TRUE(
        test::wait_until([&] { return set_default_sink_.calls() == test::StandIn::Calls{{"1"}}; }));
}

TEST_F(Start, RotatesALogThatHasOutgrownItsLimit) {
    test::write_file("/home/root/system.log", std::string(3UL << 20, 'x'));
    start();
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] init api"});
}

TEST_F(Start, RefreshesThePicturesOfTheFrontEnd) {
    const std::string shown = "/usr/local/vpclient/bin/image/";
    const std::string source = "/var/lib/ralo/image/base/";
    test::write_file(shown + "background-old.png", "old");
    test::write_file(shown + "connection-list-titlebar-old.png", "old");
    test::write_file(shown + "icon.png", "icon");
    test::write_file(source + "background-1.png", "new");
    test::write_file(source + "connection-list-titlebar-1.png", "new");
    test::write_file(source + "other.png", "other");
    start();
    EXPECT_FALSE(test::file_exists(shown + "background-old.png"));
    EXPECT_FALSE(test::file_exists(shown + "connection-list-titlebar-old.png"));
    EXPECT_FALSE(test::file_exists(shown + "other.png"));
    EXPECT_EQ(test::read_file(shown + "background-1.png"), "new");
    EXPECT_EQ(test::read_file(shown + "connection-list-titlebar-1.png"), "new");
    EXPECT_EQ(test::read_file(shown + "icon.png"), "icon");
}

} // namespace qvtc::api
