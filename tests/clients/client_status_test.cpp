// The status of a connection: which log, which process and which record decide over which id.

#include "clients/diagnosis.hpp"

#include "clients/poll_counter.hpp"
#include "connections/documents.hpp"
#include "core/base64.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class ClientStatus : public test::FreshTerminal {
  protected:
    ClientStatus() { poll_counter() = 0; }
};

using Texts = std::vector<std::string>;

const std::string rdp_tail = "tr -cd '[:alnum:][:space:][:punct:]\n' < /home/root/freerdp.log > "
                             "/tmp/tmp.log;tail -n 200 /tmp/tmp.log;rm -rf /tmp/tmp.log";
const std::string spice_tail = "tr -cd '[:alnum:][:space:][:punct:]\n' < /home/root/spicec.log > "
                               "/tmp/tmp.log;tail -n 200 /tmp/tmp.log;rm -rf /tmp/tmp.log";
const std::string rdp_process = "ps -ef|grep 'xfreerdp'|grep -v grep|wc -l";
const std::string vnc_process = "ps -ef|grep 'tightvncviewer'|grep -v grep|wc -l";

const std::string marker = "[1000]start to connect...";
const std::string parameter_error = "cGFyYW1ldGVyIGVycm9yIQ==";
const std::string unknown_error = "dW5rb3duIGVycm9yIQ==";

/// A document with a record of each type that has an address, and the marker of the last launch.
void store_terminal(const std::string& address = "10.0.0.5", const std::string& mark = marker) {
    test::Items items;
    const std::pair<const char*, int> records[] = {
        {"velopaneItem", 0}, {"rdpItem", 35},     {"spiceItem", 70},
        {"ovirtItem", 96},   {"citrixItem", 128}, {"vmwareItem", 160},
        {"vncItem", 230},    {"hdpItem", 260},    {"firefox", 290}};
    for (const auto& [prefix, id] : records) {
        items.push_back({std::string(prefix) + "_id_" + std::to_string(id),
                         {{"id", std::to_string(id)}, {"serverAddress", address}}});
    }
    items.push_back({"configItem", {{"com.valmora.thinclient.para_10_0", mark}}});
    test::store_items(items);
}

std::string value_of(connections::ConnectionId id) {
    const Json status = client_status(id);
    if (status == nullptr) return "null";
    EXPECT_EQ(json_object_object_length(status.get()), 1);
    json_object* const value = json_object_object_get(status.get(), "status");
    EXPECT_EQ(json_object_get_type(value), json_type_string);
    return json_object_get_string(value);
}

std::string words_of(const std::string& value) {
    return base64::decode(value).value_or("not base64");
}

} // namespace

// --- Which branch ----------------------------------------------------------------------------

TEST_F(ClientStatus, AnAddressOfFewerThanFourCharactersIsAParameterError) {
    for (const char* const address : {"", "a", "ab", "abc"}) {
        store_terminal(address);
        test::ScriptedOs system;
        for (const connections::ConnectionId id :
             {0U, 35U, 70U, 96U, 128U, 160U, 230U, 260U, 290U}) {
            EXPECT_EQ(value_of(id), parameter_error) << id << " at " << address;
        }
        EXPECT_EQ(system.record, Texts{});
    }
}

TEST_F(ClientStatus, ARecordThatIsMissingIsAParameterErrorBelow320) {
    store_terminal();
    test::ScriptedOs system;
    for (const connections::ConnectionId id : {1U, 31U, 32U, 63U, 64U, 95U, 127U, 191U, 192U, 223U,
                                               224U, 255U, 256U, 287U, 288U, 319U}) {
        EXPECT_EQ(value_of(id), parameter_error) << id;
    }
    EXPECT_EQ(system.record, Texts{});
}

TEST_F(ClientStatus, AnIdOfNoTypeIsNamedOnStandardOutput) {
    EXPECT_EQ(test::capture_stdout([] { EXPECT_EQ(value_of(200), parameter_error); }),
              "@getConnectItemName:: not such connection type : 6\n");
    EXPECT_EQ(test::capture_stdout([] {
                  test::ScriptedOs system;
                  value_of(320);
                  value_of(400);
              }),
              "");
}

TEST_F(ClientStatus, TypesWithoutADiagnosisAreAlwaysConnected) {
    store_terminal("abcd");
    test::ScriptedOs system;
    for (const connections::ConnectionId id :
         {96U, 128U, 160U, 230U, 290U, 384U, 1000U, 4294967295U}) {
        EXPECT_EQ(value_of(id), "1") << id;
    }
    EXPECT_EQ(system.record, Texts{});
}

TEST_F(ClientStatus, EveryBlockIsDiagnosedInItsWayFromItsFirstIdToItsLast) {
    const Texts nothing;
    const Texts broker{"capture 1024 curl --connect-timeout 3 -sk "
                       "https://host/public/velopane-identify/is-me.do | grep isMe"};
    const Texts rdp{"capture 131072 " + rdp_tail, "capture 512 " + rdp_process};
    const Texts spice{"capture 131072 " + spice_tail};
    const Texts vnc{"capture 131072 " + spice_tail, "capture 512 " + vnc_process};
    struct Block {
        const char* prefix;
        connections::ConnectionId first;
        const Texts& asked;
    };
    const Block blocks[] = {
        {"velopaneItem", 0, broker},
        {"rdpItem", 32, rdp},
        {"spiceItem", 64, spice},
        {"ovirtItem", 96, nothing},
        {"citrixItem", 128, nothing},
        {"vmwareItem", 160, nothing},
        {"vncItem", 224, nothing},
        {"hdpItem", 256, vnc},
        {"firefox", 288, nothing},
        {"", 320, rdp},
        {"", 352, spice},
        {"", 384, nothing},
    };
    for (const Block& block : blocks) {
        for (const connections::ConnectionId id : {block.first, block.first + 31}) {
            test::Items items;
            if (*block.prefix != '\0')
                items.push_back(
                    {connections::item_name(block.prefix, id), {{"serverAddress", "host"}}});
            test::store_items(items);
            test::ScriptedOs system;
            value_of(id);
            EXPECT_EQ(system.record, block.asked) << id;
        }
    }
}

// --- RDP -------------------------------------------------------------------------------------

TEST_F(ClientStatus, OfRdpComesFromItsLogThenFromItsProcess) {
    struct Case {
        std::string tail;
        const char* processes;
        std::string value;
    };
    const std::string failure = "dW5hYmxlIHRvIGNvbm5lY3QgdG8gMTAuMC4wLjU=";
    const Case cases[] = {
        {marker + "\n", "1\n", "0"},
        {marker + "\n", "0\n", unknown_error},
        {marker + "\nsome words\n", "2\n", "0"},
        {marker + "\nsome words\n", "", unknown_error},
        {marker + "\nxf_player_thread : 1\n", "1\n", "1"},
        {marker + "\nxf_player_thread : 1\n", "0\n", "1"},
        {marker + "\nunable to connect to 10.0.0.5\n", "0\n", failure},
        {marker + "\nunable to connect to 10.0.0.5\n", "1\n", failure},
        {marker + "\nunable to connect to 10.0.0.5", "0\n", failure},
        {"unable to connect to x\n" + marker + "\n", "1\n", "0"}, // of an earlier launch
        {"unable to connect to x\n", "0\n", "1"},                 // no marker
        {"", "0\n", "1"},
        {"[999]start to connect...\nunable to connect to x\n", "1\n", "1"},
    };
    for (const Case& each : cases) {
        store_terminal();
        poll_counter() = 0;
        test::ScriptedOs system;
        system.outputs = {each.tail, each.processes};
        EXPECT_EQ(value_of(35), each.value) << each.tail;
        EXPECT_EQ(system.record,
                  (Texts{"capture 131072 " + rdp_tail, "capture 512 " + rdp_process}));
    }
}

TEST_F(ClientStatus, LosesOneNewlineAtTheEndOfAnRdpLogOnly) {
    store_terminal();
    test::ScriptedOs system;
    system.outputs = {marker + "\nout of service\n\n", "0\n"};
    EXPECT_EQ(words_of(value_of(35)), "out of service\n");
    system.outputs = {marker + "\nout of service\n\n"};
    EXPECT_EQ(words_of(value_of(70)), "out of service\n\n");
    system.outputs = {marker + "\nNo route to host\n\n", "0\n"};
    EXPECT_EQ(words_of(value_of(260)), "No route to host\n\n");
}

TEST_F(ClientStatus, WithoutAStoredMarkerTheWholeTailCounts) {
    store_terminal("10.0.0.5", "");
    test::ScriptedOs system;
    system.outputs = {"words\nout of service", "0\n"};
    EXPECT_EQ(words_of(value_of(35)), "out of service");
    system.outputs = {"words\n", "0\n"};
    EXPECT_EQ(value_of(35), unknown_error);
    system.outputs = {"", "0\n"}; // no log at all
    EXPECT_EQ(value_of(35), unknown_error);
    system.outputs = {"main channel: opened"};
    EXPECT_EQ(value_of(70), "1");
    system.outputs = {""};
    EXPECT_EQ(value_of(70), "0");
}

TEST_F(ClientStatus, OfARunningRdpClientIsConnectedAtTheSeventhPollAndEverySixthAfterIt) {
    store_terminal();
    test::ScriptedOs system;
    system.replies = {{rdp_tail, marker + "\n"}, {rdp_process, "1\n"}};
    Texts values;
    for (int poll = 1; poll <= 14; ++poll) values.push_back(value_of(35));
    EXPECT_EQ(values,
              (Texts{"0", "0", "0", "0", "0", "0", "1", "0", "0", "0", "0", "0", "1", "0"}));
}

TEST_F(ClientStatus, CountsThePollsOfARunningRdpClientWhateverItsLogSays) {
    store_terminal();
    test::ScriptedOs system;
    const std::string failed = marker + "\nout of service";
    system.replies = {{rdp_tail, failed}, {rdp_process, "1\n"}};
    for (int poll = 1; poll <= 3; ++poll) EXPECT_EQ(words_of(value_of(35)), "out of service");
    system.replies[rdp_tail] = "no marker";
    for (int poll = 4; poll <= 6; ++poll) EXPECT_EQ(value_of(35), "1");
    system.replies[rdp_tail] = failed;
    EXPECT_EQ(value_of(35), "1"); // the seventh
    EXPECT_EQ(words_of(value_of(35)), "out of service");
}

TEST_F(ClientStatus, DoesNotCountPollsOfOtherBranchesOrWithoutAClient) {
    store_terminal();
    test::ScriptedOs system;
    system.replies = {{rdp_tail, marker + "\n"}, {rdp_process, "1\n"}};
    for (int poll = 1; poll <= 6; ++poll) EXPECT_EQ(value_of(35), "0");
    EXPECT_EQ(poll_counter(), 6);
    value_of(70);
    value_of(230);
    value_of(260);
    value_of(0);
    value_of(36); // parameter error
    system.replies[rdp_process] = "0\n";
    EXPECT_EQ(value_of(35), unknown_error);
    EXPECT_EQ(poll_counter(), 6);
    system.replies[rdp_process] = "1\n";
    EXPECT_EQ(value_of(35), "1");
    EXPECT_EQ(poll_counter(), 1);
}

// --- SPICE and VNC ---------------------------------------------------------------------------

TEST_F(ClientStatus, OfSpiceComesFromItsLog) {
    const std::pair<std::string, const char*> cases[] = {
        {marker + "\n", "0"},
        {marker + "\nmain channel: opened\n", "1"},
        {marker + "\nout of service", "b3V0IG9mIHNlcnZpY2U="},
        {"main channel: failed to connect", "1"}, // no marker
        {"main channel: failed to connect\n" + marker, "0"},
    };
    for (const auto& [tail, value] : cases) {
        store_terminal();
        test::ScriptedOs system;
        system.outputs = {tail};
        EXPECT_EQ(value_of(70), value) << tail;
        EXPECT_EQ(system.record, Texts{"capture 131072 " + spice_tail});
    }
}

TEST_F(ClientStatus, OfSpiceIsConnectedWhereAnotherViewerIsInstalled) {
    store_terminal();
    for (const connections::ConnectionId id : {70U, 352U}) {
        test::ScriptedOs system;
        system.files = {"/home/root/remote-viewer"};
        system.replies = {{spice_tail, marker + "\nout of service"}};
        EXPECT_EQ(value_of(id), "1");
        EXPECT_EQ(system.record, Texts{});
    }
    store_terminal("ab");
    test::ScriptedOs system;
    system.files = {"/home/root/remote-viewer"};
    EXPECT_EQ(value_of(70), parameter_error);
}

TEST_F(ClientStatus, DeliberatelyReadsVncUnderTheIdsOfHdp) {
    const std::pair<std::string, std::string> cases[] = {
        {marker + "\n", "0"},
        {marker + "\nConnected to RFB server, using protocol version 3.8\n", "1"},
        {marker + "\nNo route to host", status_value::failure("No route to host")},
        {"Connection refused", "1"}, // no marker
    };
    for (const char* const viewers : {"0\n", "1\n"}) {
        for (const auto& [tail, value] : cases) {
            store_terminal();
            test::ScriptedOs system;
            system.replies = {{spice_tail, tail}, {vnc_process, viewers}};
            EXPECT_EQ(value_of(260), value) << tail;
            ASSERT_FALSE(system.record.empty());
            EXPECT_EQ(system.record[0], "capture 131072 " + spice_tail);
            EXPECT_EQ(value_of(230), "1");
        }
    }
}

TEST_F(ClientStatus, OfVncWithoutMarkerAndLogIsWaiting) {
    store_terminal("10.0.0.5", "");
    test::ScriptedOs system;
    system.replies = {{spice_tail, ""}, {vnc_process, "0\n"}};
    EXPECT_EQ(value_of(260), "0");
}

// --- The broker ------------------------------------------------------------------------------

TEST_F(ClientStatus, OfABrokerIsWhatItAnswersAboutItself) {
    const std::string not_velopane = "bm90IHZlbG9wYW5lIQ==";
    const std::pair<const char*, std::string> cases[] = {
        {"{\"isMe\":true}\n", "1"},
        {"HTTP noise {\"isMe\":true} more\n", "1"},
        {"{\"isMe\":false}\n", not_velopane},
        {"{\"isMe\": true}\n", not_velopane},
        {"", not_velopane},
    };
    for (const auto& [answer, value] : cases) {
        store_terminal("broker.lan");
        test::ScriptedOs system;
        system.outputs = {answer};
        EXPECT_EQ(value_of(0), value) << answer;
        EXPECT_EQ(system.record,
                  Texts{"capture 1024 curl --connect-timeout 3 -sk "
                        "https://broker.lan/public/velopane-identify/is-me.do | grep isMe"});
    }
}

TEST_F(ClientStatus, AsksABrokerAtItsDecodedAddress) {
    const std::pair<std::string, std::string> cases[] = {
        {std::string(300, 'h'), std::string(255, 'h')},
        {"10.0.0.5:8443", "10.0.0.5:8443"},
        {"^31^30.0.0.5", "10.0.0.5"},
        {"a^3g.lan", "a^3g.lan"},
        {"a b;reboot", "a\\ b\\;reboot"},
        {"h^3breboot", "h\\;reboot"},
        {"$(reboot)", "\\$\\(reboot\\)"},
        {"it's^22", "it\\'s\\\""},
        {"a^00bcd", "a"},
    };
    for (const auto& [address, host] : cases) {
        store_terminal(address);
        test::ScriptedOs system;
        value_of(0);
        EXPECT_EQ(system.record, Texts{"capture 1024 curl --connect-timeout 3 -sk https://" + host +
                                       "/public/velopane-identify/is-me.do | grep isMe"});
    }
}

// --- Size ------------------------------------------------------------------------------------

TEST_F(ClientStatus, AFailureOfAHundredKilobytesComesWhole) {
    store_terminal();
    const std::string words = "out of service " + std::string(100'000, 'x') + "\n\tend";
    for (const connections::ConnectionId id : {35U, 70U}) {
        test::ScriptedOs system;
        system.outputs = {marker + "\n" + words, "0\n"};
        EXPECT_EQ(words_of(value_of(id)), words);
    }
}

} // namespace qvtc::clients
