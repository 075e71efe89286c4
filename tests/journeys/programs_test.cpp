#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <regex>

namespace qvtc::test {
namespace {

/// The example front-end and the command-line tool.
class Programs : public Journey {};

constexpr const char* front_end_usage =
    "Usage: front_end HOST[:PORT] [USER]\n"
    "Connect to an RDP server, and say what came of it. The user's password is taken\n"
    "from the environment variable RDP_PASSWORD.\n"
    "\n"
    "Exit status: 0 connected, 1 not connected, 2 wrong command line.\n";

/// What the front-end prints, with "SECONDS" for how long it took.
Output output_of_front_end(const std::string& arguments, const std::string& password = "") {
    Output output =
        output_of("RDP_PASSWORD=" + password + " " QVTC_FRONT_END " 2>/dev/null " + arguments);
    output.text = std::regex_replace(output.text, std::regex(R"( \.+ [0-9]+ s\n)"), " SECONDS\n");
    return output;
}

TEST_F(Programs, FrontEndConnects) {
    start_remote_desktop("--password");
    const Output output = output_of_front_end("127.0.0.1 demo", "password");
    EXPECT_EQ(output.text, "Launching connection 32 to 127.0.0.1 SECONDS\nConnected.\n");
    EXPECT_EQ(output.status, 0);
    EXPECT_TRUE(wait_for_colour(20, 20, remote_ground));
}

TEST_F(Programs, FrontEndReportsAKnownFailure) {
    start_remote_desktop("--password");
    const Output output = output_of_front_end("127.0.0.1");
    EXPECT_EQ(output.text, "Launching connection 32 to 127.0.0.1 SECONDS\n"
                           "Not connected: ERRCONNECT_NO_OR_MISSING_CREDENTIALS [0x0002001B]\n");
    EXPECT_EQ(output.status, 1);
}

TEST_F(Programs, FrontEndShowsTheLogOfAnUnknownFailure) {
    const Output output = output_of_front_end("127.0.0.1:3390 demo");
    std::string log;
    for (const std::string& line : lines_of(client_words())) log += "    " + line + "\n";
    EXPECT_NE(log, "");
    EXPECT_EQ(output.text, "Launching connection 32 to 127.0.0.1 SECONDS\n"
                           "Not connected: unkown error!\n"
                           "The client's log, /home/root/freerdp.log:\n" +
                               log);
    EXPECT_EQ(output.status, 1);
}

TEST_F(Programs, FrontEndUsesItsRecordAgain) {
    output_of_front_end("127.0.0.1:3390 demo");
    const Output output = output_of_front_end("127.0.0.1:3391 demo");
    EXPECT_TRUE(output.text.starts_with("Launching connection 32 to 127.0.0.1 SECONDS\n"))
        << output.text;
}

TEST_F(Programs, FrontEndExplainsItself) {
    for (const char* const arguments : {"", "--help", "a b c", "a:", "a:b", "'a&b'", "a 'x=y'"}) {
        const Output output = output_of(std::string(QVTC_FRONT_END " ") + arguments + " 2>&1");
        EXPECT_EQ(output.text, front_end_usage) << arguments;
        EXPECT_EQ(output.status, 2) << arguments;
    }
}

TEST_F(Programs, ControlConnectsReportsAndCancels) {
    start_remote_desktop("--password");
    const unsigned id = store_record({{"name", "desk"},
                                      {"serverAddress", "127.0.0.1"},
                                      {"username", "demo"},
                                      {"password", stored_password("password")},
                                      {"colorDepth", "32"}});
    const std::string number = std::to_string(id);
    EXPECT_EQ(output_of(QVTC_CONTROL " launch --wait " + number + " 2>&1").status, 0);
    EXPECT_TRUE(wait_for_colour(20, 20, remote_ground));
    EXPECT_EQ(output_of(QVTC_CONTROL " status " + number).text,
              "Connection 32 (desk): connected\n");
    EXPECT_EQ(output_of(QVTC_CONTROL " cancel").text, "Ended clients: 1 RDP.\n");
    EXPECT_TRUE(wait_until([] { return !runs("xfreerdp"); }));
}

TEST_F(Programs, ControlSaysThatNoServerIsThere) {
    store_record({{"name", "desk"},
                  {"serverAddress", "127.0.0.1"},
                  {"useCustomRDPPort", "on"},
                  {"rdpPort", "3390"}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 32 2>&1");
    EXPECT_EQ(output.status, 4);
    EXPECT_NE(output.text.find("Nothing answered at the server's port."), std::string::npos)
        << output.text;
}

} // namespace
} // namespace qvtc::test
