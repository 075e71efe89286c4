// The status of a connection from logs as they lie on a terminal, read by the real programs.

#include "clients/exports.hpp"

#include "connections/documents.hpp"
#include "core/base64.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <future>
#include <gtest/gtest.h>
#include <json-c/json.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" {
extern int counter;
}

namespace qvtc::test {

namespace {

class ClientLog : public FreshTerminal {
  protected:
    ClientLog() { counter = 0; }
};

using Texts = std::vector<std::string>;

constexpr const char* rdp_log = "/home/root/freerdp.log";
constexpr const char* spice_log = "/home/root/spicec.log";

const std::string marker = "[1763700000]start to connect...";
const std::string unknown_error = "dW5rb3duIGVycm9yIQ==";

void store_terminal(const std::string& address = "10.0.0.5") {
    store_items({{"velopaneItem_id_0", {{"id", "0"}, {"serverAddress", address}}},
                 {"rdpItem_id_35", {{"id", "35"}, {"serverAddress", address}}},
                 {"spiceItem_id_70", {{"id", "70"}, {"serverAddress", address}}},
                 {"hdpItem_id_260", {{"id", "260"}, {"serverAddress", address}}},
                 {"configItem", {{"com.valmora.thinclient.para_10_0", marker}}}});
}

std::string value_of(json_object* status) {
    if (status == nullptr) return "null";
    const std::string value = json_object_get_string(json_object_object_get(status, "status"));
    json_object_put(status);
    return value;
}

/// The words behind a failure, of the entry point and of its worker alike.
std::string words_of(unsigned id) {
    const std::string value = value_of(qvgetclientstatus(id));
    EXPECT_EQ(value_of(getclientstatus(id)), value);
    return base64::decode(value).value_or("no failure: " + value);
}

std::string numbered_lines(int count) {
    std::string text;
    for (int line = 1; line <= count; ++line) text += "line " + std::to_string(line) + "\n";
    return text;
}

} // namespace

TEST_F(ClientLog, OfRealClientsTellsWhatTheyTell) {
    const std::pair<const char*, const char*> cases[] = {
        {"authentication_failed", "ERRCONNECT_AUTHENTICATION_FAILED"},
        {"connection_reset", "Connection reset by peer"},
        {"negotiation_refused", "Error: protocol security"},
        {"no_credentials", "ERRCONNECT_NO_OR_MISSING_CREDENTIALS"},
        {"logon_failed", nullptr},
        {"no_route", nullptr},
        {"no_screen", nullptr},
        {"no_such_name", nullptr},
        {"port_refused", nullptr},
    };
    store_terminal();
    for (const auto& [name, phrase] : cases) {
        std::string log =
            read_file(std::string(QVTC_CAPTURES_DIRECTORY "/xfreerdp/") + name + ".txt");
        write_file(rdp_log, log);
        if (phrase == nullptr) {
            EXPECT_EQ(words_of(35), "unkown error!") << name;
            continue;
        }
        if (log.ends_with('\n')) log.pop_back();
        ASSERT_NE(log.find(phrase), std::string::npos) << name;
        EXPECT_EQ(words_of(35), log.substr(log.find(phrase))) << name;
    }
}

TEST_F(ClientLog, IsAskedForByTheseCommandsAndLeavesNothingBehind) {
    store_terminal();
    write_file(rdp_log, marker + "\n");
    write_file(spice_log, marker + "\n");
    const std::string tail = " > /tmp/tmp.log;tail -n 200 /tmp/tmp.log;rm -rf /tmp/tmp.log";
    const std::string rdp = "tr -cd '[:alnum:][:space:][:punct:]\n' < " + std::string(rdp_log);
    const std::string spice = "tr -cd '[:alnum:][:space:][:punct:]\n' < " + std::string(spice_log);

    EXPECT_EQ(value_of(qvgetclientstatus(35)), unknown_error);
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{{rdp + tail, true},
                                            {"ps -ef|grep 'xfreerdp'|grep -v grep|wc -l", true}}));
    forget_commands();
    EXPECT_EQ(value_of(qvgetclientstatus(70)), "0");
    EXPECT_EQ(recorded_commands(), Texts{spice + tail});
    forget_commands();
    EXPECT_EQ(value_of(qvgetclientstatus(260)), "0");
    EXPECT_EQ(recorded_commands().at(0), spice + tail);
    EXPECT_FALSE(file_exists("/tmp/tmp.log"));
}

TEST_F(ClientLog, IsReadByOneAskerAtATime) {
    store_terminal();
    // Long enough to be half written when another asker reads or removes the copy.
    write_file(spice_log, numbered_lines(100000) + marker + "\nmain channel: failed to connect\n");
    const auto asks = [] {
        int wrong = 0;
        for (int i = 0; i < 10; ++i)
            if (words_of(70) != "main channel: failed to connect\n") ++wrong;
        return wrong;
    };
    const auto askers_of_a_process = [&] {
        auto another = std::async(std::launch::async, asks);
        return asks() + another.get();
    };
    const pid_t child = fork();
    if (child == 0) _exit(std::min(askers_of_a_process(), 100));
    EXPECT_EQ(askers_of_a_process(), 0);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "wrong answers of the other process: " << WEXITSTATUS(status);
}

TEST_F(ClientLog, IsReadFromItsLastTwoHundredLinesOn) {
    store_terminal();
    const std::string rest = "line 1\nout of service\n";
    write_file(rdp_log, marker + "\n" + rest + numbered_lines(197)); // 200 lines
    std::string words = "out of service\n" + numbered_lines(197);
    words.pop_back(); // the one newline that an RDP log loses
    EXPECT_EQ(words_of(35), words);
    write_file(rdp_log, marker + "\n" + rest + numbered_lines(198)); // the marker is line 201
    EXPECT_EQ(value_of(qvgetclientstatus(35)), "1");
    write_file(spice_log, marker + "\n" + rest + numbered_lines(197));
    EXPECT_EQ(words_of(70), "out of service\n" + numbered_lines(197));
    write_file(spice_log, marker + "\n" + rest + numbered_lines(198));
    EXPECT_EQ(value_of(qvgetclientstatus(70)), "1");
}

TEST_F(ClientLog, IsReadAsFarAs131072BytesOfThem) {
    store_terminal();
    const std::string wide_line = std::string(1023, 'x') + "\n";
    std::string log = marker + "\n";
    log += "y" + std::string(1021 - marker.size(), 'y') + "\n"; // 1024 bytes so far
    while (log.size() < 131072 - 20) log += wide_line;          // 131072 by now
    ASSERT_EQ(log.size(), 131072U);
    write_file(spice_log, log + "out of service");
    EXPECT_EQ(value_of(qvgetclientstatus(70)), "0"); // lies behind
    log.resize(131072 - 14);
    write_file(spice_log, log + "out of service and more");
    EXPECT_EQ(words_of(70), "out of service");
    log += 'z'; // one byte later
    write_file(spice_log, log + "out of service");
    EXPECT_EQ(value_of(qvgetclientstatus(70)), "0"); // its last letter lies behind
}

TEST_F(ClientLog, OfAHundredKilobytesComesWhole) {
    store_terminal();
    std::string words = "out of service\n";
    for (int line = 0; line < 100; ++line) words += std::string(1000, 'x') + "\n";
    write_file(spice_log, marker + "\n" + words);
    EXPECT_EQ(words_of(70), words);
}

TEST_F(ClientLog, IsReadWithoutWhatCannotBePrinted) {
    store_terminal();
    write_file(rdp_log, marker +
                            "\n\x1b[31munable\x01 to\tconnect to H\xc3\xb6st\x7f 'a' \"b\" "
                            "<c>\xff\r\n\f\v" +
                            std::string(1, '\0') + "end \\ \n");
    EXPECT_EQ(words_of(35), "unkown error!"); // a tab is no blank
    write_file(rdp_log, marker +
                            "\n\x1b[31munable\x01 to connect to H\xc3\xb6st\x7f 'a' \"b\" "
                            "<c>\xff\r\n\f\v" +
                            std::string(1, '\0') + "end \\ \n");
    EXPECT_EQ(words_of(35), "unable to connect to Hst 'a' \"b\" <c>\r\n\f\vend \\ ");
}

TEST_F(ClientLog, ThatIsMissingHoldsNoMarker) {
    store_terminal();
    for (const unsigned id : {35U, 70U, 260U}) {
        const std::string complaint =
            capture_stderr([&] { EXPECT_EQ(value_of(qvgetclientstatus(id)), "1"); });
        EXPECT_NE(complaint.find("No such file or directory"), std::string::npos) << complaint;
    }
}

TEST_F(ClientLog, OfARunningClientIsCountedUntilItIsGone) {
    store_terminal();
    write_file(rdp_log, marker + "\n");
    StandIn client("xfreerdp");
    client.keeps_running();
    ASSERT_EQ(std::system("xfreerdp & echo $! >/tmp/client"), 0);
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    Texts values;
    for (int poll = 1; poll <= 14; ++poll) values.push_back(value_of(qvgetclientstatus(35)));
    EXPECT_EQ(values,
              (Texts{"0", "0", "0", "0", "0", "0", "1", "0", "0", "0", "0", "0", "1", "0"}));
    EXPECT_EQ(counter, 2);
    write_file(rdp_log, marker + "\nout of service");
    EXPECT_EQ(value_of(qvgetclientstatus(35)), "b3V0IG9mIHNlcnZpY2U=");
    EXPECT_EQ(counter, 3);
    ASSERT_EQ(std::system("kill $(cat /tmp/client)"), 0);
    ASSERT_TRUE(wait_until([] { return std::system("pgrep -x xfreerdp >/dev/null") != 0; }));
    write_file(rdp_log, marker + "\n");
    EXPECT_EQ(value_of(qvgetclientstatus(35)), unknown_error);
    EXPECT_EQ(counter, 3);
}

TEST_F(ClientLog, OfTheEarlierFormGoesWholeIntoTheCallersBuffer) {
    store_terminal();
    write_file(rdp_log, marker + "\nout of service " + std::string(9000, 'x') + "\n");
    std::string out(20'000, '#');
    EXPECT_EQ(xfreerdp_status(out.data()), out.data());
    const std::string text =
        "{'status':'" + base64::encode("out of service " + std::string(9000, 'x')) + "'}";
    EXPECT_STREQ(out.c_str(), text.c_str());
    EXPECT_EQ(log_lines().back(), "[DEBUG] " + ("xfreerdp_status tmp=" + text).substr(0, 10239));
    write_file(rdp_log, marker + "\nout of service " + std::string(20'000, 'x'));
    EXPECT_EQ(xfreerdp_status(out.data()), out.data());
    const std::string read = "out of service " + std::string(10240 - marker.size() - 1 - 15, 'x');
    EXPECT_STREQ(out.c_str(), ("{'status':'" + base64::encode(read) + "'}").c_str());
}

// --- The broker ------------------------------------------------------------------------------

TEST_F(ClientLog, OfABrokerIsItsAnswer) {
    store_terminal("broker.lan:8443");
    StandIn curl("curl");
    curl.prints("{\"isMe\":true}\n");
    EXPECT_EQ(value_of(qvgetclientstatus(0)), "1");
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{
                  {"curl --connect-timeout 3 -sk "
                   "https://broker.lan:8443/public/velopane-identify/is-me.do | grep isMe",
                   true}}));
    EXPECT_EQ(curl.calls(),
              (StandIn::Calls{{"--connect-timeout", "3", "-sk",
                               "https://broker.lan:8443/public/velopane-identify/is-me.do"}}));
    curl.prints("<html>not found</html>\n");
    EXPECT_EQ(words_of(0), "not velopane!");
    curl.prints("").exits_with(7);
    EXPECT_EQ(words_of(0), "not velopane!");
}

TEST_F(ClientLog, OfABrokerIsAskedForAtWhateverAddressWithoutRunningIt) {
    StandIn curl("curl");
    const char* const addresses[] = {
        "h;touch /tmp/owned", "h|touch /tmp/owned",
        "h&touch /tmp/owned", "$(touch /tmp/owned)",
        "`touch /tmp/owned`", "h\ntouch /tmp/owned",
        "h>/tmp/owned",       "h'\"touch /tmp/owned",
        "*?[a]{b,c}~#!",      "a b\tc",
    };
    for (const std::string address : addresses) {
        store_terminal(address);
        curl.forget_calls();
        EXPECT_EQ(words_of(0), "not velopane!");
        const std::string host = stored_value("velopaneItem_id_0", "serverAddress");
        const StandIn::Arguments arguments = {"--connect-timeout", "3", "-sk",
                                              "https://" + host +
                                                  "/public/velopane-identify/is-me.do"};
        EXPECT_EQ(curl.calls(), (StandIn::Calls{arguments, arguments})) << address;
        EXPECT_FALSE(file_exists("/tmp/owned")) << address;
    }
    store_terminal("h^3btouch^20/tmp/owned^26");
    curl.forget_calls();
    EXPECT_EQ(words_of(0), "not velopane!");
    EXPECT_EQ(curl.calls().at(0).at(3),
              "https://h;touch /tmp/owned&/public/velopane-identify/is-me.do");
    EXPECT_FALSE(file_exists("/tmp/owned"));
}

} // namespace qvtc::test
