// VNC sessions with the real viewer, TigerVNC's, and a real server.
#include "desktop.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* viewer_log = "/home/root/vnc.log";

class VncSession : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("vncviewer");
        QVTC_NEED_PROGRAM("x11vnc");
        Journey::SetUp();
    }

    /// Serves the remote desktop at port 5900, under a name.
    static void serve(const std::string& options) {
        start_remote_desktop();
        start_vnc_server(":5", options);
    }

    static bool viewer_says(const std::string& words) {
        return wait_until(
            [&] {
                return file_exists(viewer_log) &&
                       read_file(viewer_log).find(words) != std::string::npos;
            },
            patience);
    }
};

// This viewer has the desktop's name in its window's title, and nothing else to be known by.
TEST_F(VncSession, ComesUpAndIsSeenByTheWatcher) {
    serve("-nopw -desktop 'vncviewer demo'");
    const unsigned id =
        store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1"}});
    forget_commands();

    ASSERT_EQ(qvlaunchclient(id), 0);

    EXPECT_EQ(wait_for_verdict(), verdict_connected);
    EXPECT_TRUE(wait_for_colour(640, 700, remote_ground));
    EXPECT_TRUE(has_window("\"vncviewer demo - TigerVNC\""));
    EXPECT_TRUE(viewer_says("Connected to host 127.0.0.1 port 5900"));
    const std::vector<std::string> commands = recorded_commands();
    ASSERT_GE(commands.size(), 4U);
    EXPECT_EQ(commands[3], "vncviewer FullScreen 127.0.0.1 >>/home/root/vnc.log 2>&1 &");
    EXPECT_EQ(status_of(id), "1");
}

TEST_F(VncSession, EndsTheOneBefore) {
    serve("-nopw -desktop 'vncviewer demo'");
    const unsigned id =
        store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1"}});
    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_EQ(wait_for_verdict(), verdict_connected);
    const std::string first = output_of("pgrep -x vncviewer").text;
    ASSERT_EQ(qvlaunchclient(id), 0);
    EXPECT_TRUE(wait_until(
        [&] {
            const std::string now = output_of("pgrep -x vncviewer").text;
            return lines_of(now).size() == 1 && now != first;
        },
        patience));
}

TEST_F(VncSession, WithoutAServerFailsAndTheReasonIsTold) {
    store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1::5999"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 224 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("  What it means:   Nothing answered at the server's port. Probably "
                               "it is closed, or the server is switched off.\n"),
              std::string::npos)
        << output.text;
    EXPECT_NE(output.text.find("unable to connect to socket: Connection refused (111)"),
              std::string::npos)
        << output.text;
    EXPECT_TRUE(wait_until([] { return watchers_verdict() == verdict_failed; }, patience));
}

TEST_F(VncSession, WithAWrongPasswordFailsAndTheReasonIsTold) {
    ASSERT_EQ(output_of("x11vnc -storepasswd secret /tmp/password 2>&1").status, 0);
    serve("-rfbauth /tmp/password -desktop 'vncviewer demo'");
    store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1"}});
    setenv("VNC_PASSWORD", "wrong", 1); // where this viewer looks for one
    const Output output = output_of(QVTC_CONTROL " launch --wait 224 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The server refused the password."), std::string::npos)
        << output.text;
}

TEST_F(VncSession, ThatAsksForAPasswordOnTheScreenHasNoOutcomeYet) {
    ASSERT_EQ(output_of("x11vnc -storepasswd secret /tmp/password 2>&1").status, 0);
    serve("-rfbauth /tmp/password -desktop 'vncviewer demo'");
    store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait --timeout 4 224 2>&1");
    EXPECT_EQ(output.status, 5);
    EXPECT_NE(output.text.find("connection 224 (lab) has no outcome after 4 s: the client asks for "
                               "the password on the terminal's screen.\n"),
              std::string::npos)
        << output.text;
    EXPECT_TRUE(has_window("\"VNC authentication\""));
}

// Deliberate: the address follows the password without a blank, so that the viewer looks for a
// server of both their names.
TEST_F(VncSession, DeliberatelyTakesAStoredPasswordForTheBeginningOfTheAddress) {
    serve("-nopw -desktop 'vncviewer demo'");
    store_record(QVTC_TYPE_VNC,
                 {{"name", "lab"}, {"serverAddress", "127.0.0.1"}, {"password", "secret"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 224 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The server's name could not be found."), std::string::npos)
        << output.text;
    EXPECT_TRUE(viewer_says("unable to resolve host by name"));
}

// Deliberate: for the watcher a window counts when its line holds "vncviewer", which this viewer's
// does not unless the desktop's name does. The viewer's own words tell better.
TEST_F(VncSession, DeliberatelyFailsForTheWatcherWithoutTheWordInItsWindow) {
    serve("-nopw -desktop demo");
    store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 224 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_TRUE(wait_for_colour(640, 700, remote_ground));
    EXPECT_EQ(output_of(QVTC_CONTROL " status 224").text, "Connection 224 (lab): connected\n");
    EXPECT_TRUE(wait_until([] { return watchers_verdict() == verdict_failed; }, patience));
    EXPECT_EQ(output_of(QVTC_CONTROL " cancel 224").text,
              "Ended the client of connection 224 (lab).\n");
    EXPECT_FALSE(has_window("TigerVNC"));
}

} // namespace
} // namespace qvtc::test
