// SPICE sessions with the real viewer, remote-viewer, and a real machine's screen.
#include "desktop.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* viewer_log = "/home/root/spicec.log";
constexpr const char* without_password = "disable-ticketing=on";
constexpr const char* with_password = "password-secret=s0 -object secret,id=s0,data=secret";

class SpiceSession : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("remote-viewer");
        QVTC_NEED_PROGRAM("qemu-system-x86_64");
        Journey::SetUp();
    }

    /// The words that the library's diagnosis looks for are this viewer's only if it is asked to
    /// talk.
    static void let_the_viewer_talk() { setenv("G_MESSAGES_DEBUG", "virt-viewer", 1); }

    static unsigned stored(const std::string& port) {
        return store_record(QVTC_TYPE_SPICE, {{"name", "machine"},
                                              {"serverAddress", "127.0.0.1"},
                                              {"port", port},
                                              {"desktopBackground", "off"},
                                              {"fontSmooth", "off"}});
    }
};

TEST_F(SpiceSession, ComesUpAndIsSeenByTheWatcher) {
    let_the_viewer_talk();
    start_spice_server("5930", without_password);
    const unsigned id = stored("5930");
    forget_commands();

    ASSERT_EQ(launch_within_a_second(id), 0);

    EXPECT_EQ(wait_for_verdict(), verdict_connected);
    EXPECT_TRUE(wait_until([&] { return status_of(id) == "1"; }, patience))
        << read_file(viewer_log);
    EXPECT_TRUE(wait_until(
        [] { return read_file(viewer_log).find("main channel: opened") != std::string::npos; },
        patience));
    // The machine's name, which only the server can tell.
    EXPECT_TRUE(wait_until([] { return has_window("\"QEMU"); }, patience));
    const std::vector<std::string> commands = recorded_commands();
    ASSERT_GE(commands.size(), 6U);
    EXPECT_EQ(commands[5],
              "remote-viewer -f --spice-disable-effects=\"wallpaper,font-smooth,animation\" "
              "--spice-disable-usbredir spice://127.0.0.1:5930 >>/home/root/spicec.log 2>&1 &");
}

// The lists of devices and effects are the real viewer's own language.
TEST_F(SpiceSession, ComesUpWithTheTerminalsUsbDevices) {
    let_the_viewer_talk();
    start_spice_server("5930", without_password);
    const unsigned id = store_record(QVTC_TYPE_SPICE, {{"name", "machine"},
                                                       {"serverAddress", "127.0.0.1"},
                                                       {"port", "5930"},
                                                       {"useRedirect", "on"}});
    ASSERT_EQ(launch_within_a_second(id), 0);
    EXPECT_EQ(wait_for_verdict(), verdict_connected);
    EXPECT_TRUE(wait_until([&] { return status_of(id) == "1"; }, patience))
        << read_file(viewer_log);
}

// The viewer shows a window whatever happens, so the watcher's word is no proof.
TEST_F(SpiceSession, WithoutAServerIsNamedByTheDiagnosisWhileTheWatcherSeesAWindow) {
    let_the_viewer_talk();
    const unsigned id = stored("5939");
    ASSERT_EQ(launch_within_a_second(id), 0);
    EXPECT_TRUE(wait_until([&] { return status_of(id).size() > 1; }, patience))
        << read_file(viewer_log);
    std::string tail = read_file(viewer_log);
    const std::size_t failure = tail.find("main channel: failed to connect Could not connect to "
                                          "127.0.0.1: Connection refused");
    ASSERT_NE(failure, std::string::npos) << tail;
    EXPECT_TRUE(wait_until(
        [&] {
            const std::string log = read_file(viewer_log);
            return status_of(id) == base64_of(log.substr(failure));
        },
        patience));
    EXPECT_EQ(wait_for_verdict(), verdict_connected);
}

// qvtcctl lets the viewer talk by itself.
TEST_F(SpiceSession, ControlSaysThatItIsConnectedOnlyWhenItIs) {
    start_spice_server("5930", without_password);
    stored("5930");
    const Output output = output_of(QVTC_CONTROL " launch --wait 64 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_NE(read_file(viewer_log).find("main channel: opened"), std::string::npos);
    EXPECT_EQ(output_of(QVTC_CONTROL " status 64").text, "Connection 64 (machine): connected\n");
}

TEST_F(SpiceSession, ControlSaysThatNoServerIsThere) {
    stored("5939");
    const Output output = output_of(QVTC_CONTROL " launch --wait 64 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("Nothing answered at the server's port."), std::string::npos)
        << output.text;
}

TEST_F(SpiceSession, ControlSaysThatTheNameIsNotKnown) {
    store_record(QVTC_TYPE_SPICE,
                 {{"name", "machine"}, {"serverAddress", "no-such-server.lan"}, {"port", "5930"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 64 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The server's name could not be found."), std::string::npos)
        << output.text;
}

TEST_F(SpiceSession, ControlSaysThatThePasswordIsRefused) {
    start_spice_server("5931", with_password);
    stored("5931"); // a record's password never reaches the viewer
    const Output output = output_of(QVTC_CONTROL " launch --wait 64 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The server refused the password."), std::string::npos)
        << output.text;
    EXPECT_TRUE(
        output_of(QVTC_CONTROL " status 64").text.starts_with("Connection 64 (machine): failed"));
}

// Deliberate: no process is called "remote-view", so the former viewer stays.
TEST_F(SpiceSession, DeliberatelyLeavesTheOneBefore) {
    start_spice_server("5930", without_password);
    const unsigned id = stored("5930");
    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_EQ(wait_for_verdict(), verdict_connected);
    ASSERT_EQ(qvlaunchclient(id), 0);
    EXPECT_TRUE(wait_until(
        [] { return lines_of(output_of("pgrep -x remote-viewer").text).size() == 2; }, patience));
}

} // namespace
} // namespace qvtc::test
