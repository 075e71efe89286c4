// The RDP status by the earlier form of the diagnosis.

#include "clients/diagnosis.hpp"

#include "clients/poll_counter.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class EarlierStatus : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

const std::string rdp_tail = "tr -cd '[:alnum:][:space:][:punct:]\n' < /home/root/freerdp.log > "
                             "/tmp/tmp.log;tail -n 200 /tmp/tmp.log;rm -rf /tmp/tmp.log";
const std::string rdp_process = "ps -ef|grep 'xfreerdp'|grep -v grep|wc -l";

const std::string marker = "[1000]start to connect...";
const std::string unknown_error = "dW5rb3duIGVycm9yIQ==";

void store_marker() {
    test::store_items({{"configItem", {{"com.valmora.thinclient.para_10_0", marker}}}});
}

} // namespace

TEST_F(EarlierStatus, ComesFromTheRdpLogThenFromTheProcess) {
    struct Case {
        std::string tail;
        const char* processes;
        std::string value;
    };
    const Case cases[] = {
        {marker + "\n", "1\n", "1"}, // never "0"
        {marker + "\n", "0\n", unknown_error},
        {marker + "\n" + std::string(40, 'x'), "1\n", "1"},
        {marker + "\n" + std::string(40, 'x'), "0\n", unknown_error},
        {marker + "\nxf_player_thread : 1", "0\n", "1"},
        {marker + "\nout of service\n", "1\n", "b3V0IG9mIHNlcnZpY2U="},
        {marker + "\nERRCONNECT_AUTHENTICATION_FAILED", "1\n", "1"},
        {marker + "\nProtocol Security Negotiation Failure", "0\n", unknown_error},
        {marker + "\nERRCONNECT_NO_OR_MISSING_CREDENTIALS", "0\n", unknown_error},
        {"out of service", "0\n", "1"}, // no marker
        {"", "0\n", "1"},
    };
    for (const Case& each : cases) {
        store_marker();
        test::write_file("/home/root/system.log", "");
        test::ScriptedOs system;
        system.replies = {{rdp_tail, each.tail}, {rdp_process, each.processes}};
        const std::string text = "{'status':'" + each.value + "'}";
        EXPECT_EQ(earlier_rdp_status(), text) << each.tail;
        EXPECT_EQ(system.record.at(0), "capture 10240 " + rdp_tail);
        EXPECT_EQ(test::log_lines(), Texts{"[DEBUG] xfreerdp_status tmp=" + text});
    }
}

TEST_F(EarlierStatus, CountsNoPolls) {
    store_marker();
    test::ScriptedOs system;
    poll_counter() = 3;
    system.replies = {{rdp_tail, marker + "\nout of service"}, {rdp_process, "1\n"}};
    for (int poll = 1; poll <= 14; ++poll) {
        EXPECT_EQ(earlier_rdp_status(), "{'status':'b3V0IG9mIHNlcnZpY2U='}");
    }
    EXPECT_EQ(poll_counter(), 3);
}

} // namespace qvtc::clients
