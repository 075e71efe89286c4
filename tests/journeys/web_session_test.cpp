// Web sessions with the real browser and a page of this terminal's own.
#include "desktop.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* browser_log = "/home/root/firefox.log";

class WebSession : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("firefox");
        QVTC_NEED_PROGRAM("python3");
        Journey::SetUp();
    }
};

/// A terminal whose X server has not come up.
class ScreenlessWebSession : public testing::Test {};

TEST_F(WebSession, ComesUpAndIsSeenByTheWatcher) {
    start_web_server("8080");
    const unsigned id =
        store_record(QVTC_TYPE_WEB,
                     {{"name", "page"}, {"serverAddress", "http://127.0.0.1:8080/index.html?a#b"}});
    forget_commands();

    ASSERT_EQ(qvlaunchclient(id), 0);

    EXPECT_EQ(wait_for_verdict(), verdict_connected);
    EXPECT_TRUE(wait_until([] { return has_window("\"The terminal's page"); }, patience))
        << read_file(browser_log);
    EXPECT_TRUE(wait_for_colour(500, 500, remote_ground));
    EXPECT_NE(read_file("/tmp/web.log").find("\"GET /index.html?a HTTP/1.1\" 200"),
              std::string::npos);
    const std::vector<std::string> commands = recorded_commands();
    ASSERT_GE(commands.size(), 3U);
    EXPECT_EQ(commands[2],
              "firefox http://127.0.0.1:8080/index.html\\?a#b >>/home/root/firefox.log 2>&1 &");
    EXPECT_EQ(status_of(id), "1");
}

TEST_F(WebSession, ControlSaysThatItIsConnected) {
    start_web_server("8080");
    store_record(QVTC_TYPE_WEB, {{"name", "page"}, {"serverAddress", "http://127.0.0.1:8080/"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 288 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
}

TEST_F(ScreenlessWebSession, FailsAndTheReasonIsTold) {
    QVTC_NEED_PROGRAM("firefox");
    store_record(QVTC_TYPE_WEB, {{"name", "page"}, {"serverAddress", "http://127.0.0.1:8080/"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 288 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The client could not open the terminal's screen."),
              std::string::npos)
        << output.text;
    EXPECT_NE(read_file(browser_log).find("cannot open display: :0"), std::string::npos);
    EXPECT_TRUE(wait_until([] { return watchers_verdict() == verdict_failed; }, patience));
}

} // namespace
} // namespace qvtc::test
