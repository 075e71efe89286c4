// Web sessions with the real browser and a page of this terminal's own.
#include "desktop.hpp"
#include "faulty_server.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* browser_log = "/home/root/firefox.log";
const std::string patiently = "--timeout 90"; // several browsers at once take their time

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
    const Output output = output_of(QVTC_CONTROL " launch --wait 288 " + patiently + " 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
}

/// What "launch --wait" and then "status" say of a web connection to that address; the browser
/// has ended then.
Output launch_page(const std::string& address, const std::string& options = patiently) {
    store_record(QVTC_TYPE_WEB, {{"name", "page"}, {"serverAddress", address}});
    Output output = output_of(QVTC_CONTROL " launch --wait 288 " + options + " 2>&1");
    output.text += output_of(QVTC_CONTROL " status 288").text;
    output_of(QVTC_CONTROL " cancel");
    return output;
}

// The browser shows a page of its own then, whose title depends on its language.
TEST_F(WebSession, ControlSaysWhyThePageIsNotThere) {
    const Output output = launch_page("http://127.0.0.1:8099/");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("Nothing answered at the server's port."), std::string::npos)
        << output.text;
    EXPECT_NE(output.text.find("Connection 288 (page): failed"), std::string::npos) << output.text;
}

// The running browser opens it in another tab, and goes on showing the first one.
TEST_F(WebSession, ControlTellsTheTabsOfOneBrowserApart) {
    start_web_server("8080");
    store_record(QVTC_TYPE_WEB, {{"name", "page"}, {"serverAddress", "http://127.0.0.1:8080/"}});
    store_record(QVTC_TYPE_WEB, {{"name", "lost"}, {"serverAddress", "http://localhost:8099/"}});
    const auto control = [](const std::string& words) {
        return output_of(QVTC_CONTROL " " + words + " 2>&1");
    };
    ASSERT_EQ(control("launch --wait 288 " + patiently).status, 0);
    const Output second = control("launch --wait 289 " + patiently);
    EXPECT_EQ(second.status, 4) << second.text;
    EXPECT_NE(second.text.find("and shows the page in another tab."), std::string::npos)
        << second.text;
    EXPECT_EQ(control("status 288").text, "Connection 288 (page): connected\n");
    EXPECT_TRUE(control("status 289").text.starts_with("Connection 289 (lost): failed\n"));
    const Output alone = control("launch --wait --end-others 288");
    EXPECT_EQ(alone.status, 0) << alone.text;
    EXPECT_EQ(control("status 289").text, "Connection 289 (lost): not running\n"
                                          "  Another web connection's client is running.\n");
    EXPECT_EQ(control("cancel 288").status, 0);
    EXPECT_EQ(control("status 288").text, "Connection 288 (page): not running\n");
}

TEST_F(WebSession, ControlSaysThatTheCertificateIsNotTrusted) {
    output_of("openssl req -x509 -newkey rsa:2048 -nodes -keyout /tmp/key.pem -out /tmp/cert.pem "
              "-subj /CN=127.0.0.1 -days 2 2>&1; setsid openssl s_server -quiet -www -accept 8443 "
              "-key /tmp/key.pem -cert /tmp/cert.pem >/tmp/tls.log 2>&1 </dev/null &");
    ASSERT_TRUE(wait_until([] { return answers("8443"); }, patience));
    const Output output = launch_page("https://127.0.0.1:8443/");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("The server's certificate is self-signed"), std::string::npos)
        << output.text;
}

TEST_F(WebSession, ControlDoesNotTakeASlowPageForOneThatIsThere) {
    start_web_server("8080");
    const FaultyServer slow(relay_late("8080", std::chrono::seconds(10)));
    const Output output = launch_page("http://127.0.0.1:" + slow.port() + "/", "--timeout 6");
    EXPECT_EQ(output.status, 5) << output.text;
    EXPECT_NE(
        output.text.find("Connection 288 (page): the client runs, waiting for the connection"),
        std::string::npos)
        << output.text;
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
