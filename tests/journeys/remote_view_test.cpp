// The remote view of the terminal's own screen: a real server, started as a front-end starts it.
#include "desktop.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* port = "5900";
constexpr const char* no_authentication = "1";
constexpr const char* vnc_authentication = "2";

class RemoteView : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("x11vnc");
        Journey::SetUp();
    }

    static void ask_for_it(const std::string& setting) {
        write_file("/home/root/vpclientData.xml",
                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ThinClientConfig>\n  <configItem>"
                   "\n    <tc_config_param_18>" +
                       setting + "</tc_config_param_18>\n  </configItem>\n</ThinClientConfig>\n");
    }

    static bool comes_up() {
        return wait_until([] { return answers(port); }, patience);
    }

    /// A viewer on the screen :5 of somebody else, who sees the terminal's ground.
    static std::string words_of_a_viewer(const std::string& environment) {
        output_of("DISPLAY=:5 " + environment +
                  " vncviewer FullScreen 127.0.0.1 >/tmp/viewer.log 2>&1 &");
        EXPECT_TRUE(wait_until(
            [] {
                return output_of("DISPLAY=:5 xwininfo -root -tree").text.find("TigerVNC Viewer") !=
                       std::string::npos;
            },
            patience));
        std::string words;
        EXPECT_TRUE(wait_until(
            [&] {
                words = read_file("/tmp/viewer.log");
                return words.find("Using pixel format") != std::string::npos ||
                       words.find("failure") != std::string::npos;
            },
            patience));
        return words;
    }
};

TEST_F(RemoteView, IsServedToEverybodyWithoutAPassword) {
    ask_for_it("{'vnc':'on','password':''}");
    EXPECT_EQ(qvtcinitapi(), 0);
    ASSERT_TRUE(comes_up());
    EXPECT_TRUE(wait_until([] { return vnc_security_types(port) == no_authentication; }, patience))
        << vnc_security_types(port);
}

TEST_F(RemoteView, IsServedToWhoKnowsThePassword) {
    ASSERT_EQ(output_of("x11vnc -storepasswd secret /etc/x11vnc.pass 2>&1").status, 0);
    ask_for_it("{'vnc':'on','password':'on'}");
    EXPECT_EQ(qvtcinitapi(), 0);
    ASSERT_TRUE(comes_up());
    EXPECT_TRUE(wait_until([] { return vnc_security_types(port) == vnc_authentication; }, patience))
        << vnc_security_types(port);
}

TEST_F(RemoteView, ShowsTheTerminalsScreenToARealViewer) {
    QVTC_NEED_PROGRAM("vncviewer");
    ASSERT_EQ(output_of("x11vnc -storepasswd secret /etc/x11vnc.pass 2>&1").status, 0);
    start_remote_desktop();
    ask_for_it("{'vnc':'on','password':'on'}");
    EXPECT_EQ(qvtcinitapi(), 0);
    ASSERT_TRUE(comes_up());
    const std::string words = words_of_a_viewer("VNC_PASSWORD=secret");
    EXPECT_NE(words.find("Choosing security type VncAuth(2)"), std::string::npos) << words;
    EXPECT_NE(words.find("Using pixel format"), std::string::npos) << words;
}

TEST_F(RemoteView, KeepsOutARealViewerWithAnotherPassword) {
    QVTC_NEED_PROGRAM("vncviewer");
    ASSERT_EQ(output_of("x11vnc -storepasswd secret /etc/x11vnc.pass 2>&1").status, 0);
    start_remote_desktop();
    ask_for_it("{'vnc':'on','password':'on'}");
    EXPECT_EQ(qvtcinitapi(), 0);
    ASSERT_TRUE(comes_up());
    const std::string words = words_of_a_viewer("VNC_PASSWORD=another");
    EXPECT_NE(words.find("Authentication failure: password check failed!"), std::string::npos)
        << words;
}

TEST_F(RemoteView, IsServedByOneServerHoweverOftenTheFrontEndStarts) {
    ask_for_it("{'vnc':'on','password':''}");
    EXPECT_EQ(qvtcinitapi(), 0);
    ASSERT_TRUE(comes_up());
    // It goes on in a process and a session of its own, and the one that was started ends.
    const auto servers = [] { return lines_of(output_of("pgrep -x x11vnc").text); };
    std::vector<std::string> server;
    ASSERT_TRUE(wait_until(
        [&] {
            server = servers();
            return server.size() == 1 &&
                   server == lines_of(output_of("pgrep -x x11vnc -s " + server.front()).text);
        },
        patience));
    forget_commands();
    EXPECT_EQ(qvtcinitapi(), 0);
    for (const std::string& command : recorded_commands()) {
        EXPECT_FALSE(command.starts_with("x11vnc ")) << command;
    }
    EXPECT_EQ(servers(), server);
}

TEST_F(RemoteView, IsNotServedUnlessAskedFor) {
    ask_for_it("{'vnc':'off','password':''}");
    EXPECT_EQ(qvtcinitapi(), 0);
    EXPECT_FALSE(runs("x11vnc"));
    EXPECT_FALSE(answers(port));
}

} // namespace
} // namespace qvtc::test
