// Horizon sessions. Its client cannot be had freely: a program with a real window of that name
// takes its place.
#include "desktop.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

class HorizonSession : public Journey {
  protected:
    void SetUp() override {
        Journey::SetUp();
        // A clock whose process and window have the client's name. It would not take its options.
        output_of("mkdir -p /opt/view && cp \"$(type -P xclock)\" /opt/view/vmware-view");
        forget_commands();
    }

    static unsigned stored(const std::string& password) {
        return store_record(QVTC_TYPE_HORIZON, {{"name", "pool"},
                                                {"serverAddress", "view.lan"},
                                                {"username", "anna"},
                                                {"password", password},
                                                {"desktop", "57696e3131"},
                                                {"vmwareProtocol", "BLAST"}});
    }
};

constexpr const char* show_clock = "exec /opt/view/vmware-view -title 'Windows 11'";

TEST_F(HorizonSession, ComesUpAndIsSeenByTheWatcher) {
    StandIn client("vmware-view");
    client.runs(show_clock);
    const unsigned id = stored(stored_password("secret"));

    ASSERT_EQ(qvlaunchclient(id), 0);

    EXPECT_EQ(wait_for_verdict(), verdict_connected);
    EXPECT_TRUE(has_window("\"Windows 11\": (\"vmware-view\" \"XClock\")"));
    EXPECT_EQ(client.calls(), (StandIn::Calls{{"-q", "--once", "--enableMMR", "--monitors=2", "-s",
                                               "view.lan", "-u", "anna", "-p", "secret", "-n",
                                               "Win11", "--nomenubar", "--protocol=BLAST"}}));
    EXPECT_EQ(status_of(id), "1");
}

TEST_F(HorizonSession, EndsTheOneBefore) {
    StandIn client("vmware-view");
    client.runs(show_clock);
    const unsigned id = stored(stored_password("secret"));
    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_EQ(wait_for_verdict(), verdict_connected);
    const std::string first = output_of("pgrep -x vmware-view").text;
    ASSERT_EQ(qvlaunchclient(id), 0);
    EXPECT_TRUE(wait_until(
        [&] {
            const std::string now = output_of("pgrep -x vmware-view").text;
            return lines_of(now).size() == 1 && now != first;
        },
        patience));
}

TEST_F(HorizonSession, ControlSaysThatItIsConnected) {
    StandIn client("vmware-view");
    client.runs(show_clock);
    stored(stored_password("secret"));
    const Output output = output_of(QVTC_CONTROL " launch --wait 160 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
}

TEST_F(HorizonSession, ControlSaysThatTheStoredPasswordIsNone) {
    StandIn client("vmware-view");
    client.runs(show_clock);
    stored("abcde");
    const Output output = output_of(QVTC_CONTROL " launch --wait 160 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The stored password cannot be decoded."), std::string::npos)
        << output.text;
    EXPECT_EQ(client.calls(), StandIn::Calls{});
}

TEST_F(HorizonSession, ControlSaysThatTheClientIsNotInstalled) {
    QVTC_NEED(!has_program("vmware-view"), "a real client is installed");
    stored(stored_password("secret"));
    const Output output = output_of(QVTC_CONTROL " launch --wait 160 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The client program is not installed."), std::string::npos)
        << output.text;
    EXPECT_TRUE(wait_until([] { return watchers_verdict() == verdict_failed; }, patience));
}

} // namespace
} // namespace qvtc::test
