#include "clients/session.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class SessionStart : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

constexpr Session session = {"/home/root/x.log", "x connection", "x-window"};

} // namespace

TEST_F(SessionStart, BeginsWithAMarkerInTheLogAndInTheSettings) {
    test::ScriptedOs system;
    system.time = 1000;
    begin_session("/home/root/x.log");
    EXPECT_EQ(system.record, Texts{"run echo '[1000]start to connect...'>>/home/root/x.log"});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1000]start to connect...");
}

TEST_F(SessionStart, StoresAFreshMarkerThenEndsTheFormerClientsThenStartsThisOne) {
    test::ScriptedOs system;
    system.time = 2000;
    EXPECT_TRUE(start_session(session, "x-client -f", {"killall x", "killall y"}));
    EXPECT_EQ(system.record, (Texts{"run killall x", "run killall y",
                                    "run x-client -f >>/home/root/x.log 2>&1 &", "thread"}));
    EXPECT_EQ(test::log_lines(),
              Texts{"[INFO] x connection params:x-client -f >>/home/root/x.log 2>&1 &"});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[2000]start to connect...");
}

TEST_F(SessionStart, ACommandWithPercentSignsIsLoggedAsItIs) {
    test::ScriptedOs system;
    EXPECT_TRUE(start_session(session, "x-client %s%n", {}));
    EXPECT_EQ(test::log_lines(),
              Texts{"[INFO] x connection params:x-client %s%n >>/home/root/x.log 2>&1 &"});
}

TEST_F(SessionStart, FailsWithoutAThread) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(start_session(session, "x-client", {}));
    EXPECT_EQ(system.record, (Texts{"run x-client >>/home/root/x.log 2>&1 &", "thread"}));
}

TEST_F(SessionStart, DeliberatelyLeavesTheFirstMarkerInTheLogWhenTheSecondHasTurned) {
    test::ScriptedOs system;
    system.time = 1000;
    system.clock_step = 1;
    begin_session("/home/root/x.log");
    EXPECT_TRUE(start_session(session, "x-client", {}));
    EXPECT_EQ(system.record.at(0), "run echo '[1000]start to connect...'>>/home/root/x.log");
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1001]start to connect...");
}

} // namespace qvtc::clients
