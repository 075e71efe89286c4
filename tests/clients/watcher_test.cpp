#include "clients/watcher.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class OutcomeWatch : public test::FreshTerminal {};
class RdpWindowWatch : public test::FreshTerminal {};
class StartWatch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

const std::string shown = "     0x200001 \"x\": (\"xfreerdp\" \"xfreerdp\")  640x480+0+0\n";
const std::string hidden;

const std::string clear = "run echo \"\" > /usr/local/vpclient/config/clientstatus";
const std::string success =
    "echo \"0x00000000 connect success\" > /usr/local/vpclient/config/clientstatus";
const std::string failure =
    "echo \"0x00000001 connect failed\" > /usr/local/vpclient/config/clientstatus";
const std::string look = "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep remote-view";

/// What a watch for "remote-view" records that looks `polls` times, a second apart.
Texts looks(int polls) {
    Texts record{clear};
    for (int poll = 0; poll < polls; ++poll) {
        if (poll > 0) record.push_back("sleep 1");
        record.push_back(look);
    }
    return record;
}

Texts then(Texts record, const Texts& more) {
    record.insert(record.end(), more.begin(), more.end());
    return record;
}

/// The outputs of one poll for each letter: "+" shows the window, "-" does not.
std::deque<std::string> outputs_of(std::string_view polls) {
    std::deque<std::string> outputs;
    for (const char poll : polls) outputs.push_back(poll == '+' ? shown : hidden);
    return outputs;
}

} // namespace

// --- The watch that writes an outcome --------------------------------------------------------

TEST_F(OutcomeWatch, AWindowThatIsThereAtOnceIsASuccessWithoutWaiting) {
    test::ScriptedOs system;
    system.outputs = outputs_of("+");
    watch_for_outcome("remote-view");
    EXPECT_EQ(system.record, then(looks(1), {"run " + success}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] connectstatus_thread:" + success});
}

TEST_F(OutcomeWatch, AWindowOnTheThirdPollIsASuccessAfterTwoSeconds) {
    test::ScriptedOs system;
    system.outputs = outputs_of("--+");
    watch_for_outcome("remote-view");
    EXPECT_EQ(system.record, then(looks(3), {"run " + success}));
}

TEST_F(OutcomeWatch, AWindowOnTheTenthPollIsASuccess) {
    test::ScriptedOs system;
    system.outputs = outputs_of("---------+");
    watch_for_outcome("remote-view");
    EXPECT_EQ(system.record, then(looks(10), {"run " + success}));
}

TEST_F(OutcomeWatch, TheTenthMissIsAFailureAfterNineSeconds) {
    test::ScriptedOs system;
    system.outputs = outputs_of("----------+");
    watch_for_outcome("remote-view");
    EXPECT_EQ(system.record, then(looks(10), {"run " + failure}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] connectstatus_thread:" + failure});
}

TEST_F(OutcomeWatch, OnlyMoreThanFiveCharactersAreAWindow) {
    test::ScriptedOs system;
    system.outputs = {"12345", "\n\n\n\n\n", "123456"};
    watch_for_outcome("remote-view");
    EXPECT_EQ(system.record, then(looks(3), {"run " + success}));
}

TEST_F(OutcomeWatch, ThePatternIsWhatIsLookedFor) {
    for (const char* const pattern : {"remote-view", "vmware-view", "vncviewer", "firefox"}) {
        test::ScriptedOs system;
        system.outputs = outputs_of("+");
        watch_for_outcome(pattern);
        EXPECT_EQ(
            system.record,
            (Texts{clear,
                   std::string("capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep ") + pattern,
                   "run " + success}));
    }
}

// --- The watch of an RDP window --------------------------------------------------------------

TEST_F(RdpWindowWatch, TheTenthSightingResetsUsbOnceAndEnds) {
    test::ScriptedOs system;
    system.outputs = outputs_of("++++++++++++");
    watch_rdp_window("remote-view");
    EXPECT_EQ(system.record, then(looks(10), {"run /usr/bin/resetusb.sh"}));
    EXPECT_EQ(test::log_lines(), Texts{});
}

TEST_F(RdpWindowWatch, TheTenthMissEndsWithoutResetAndWithoutWaiting) {
    test::ScriptedOs system;
    system.outputs = outputs_of("------------");
    watch_rdp_window("remote-view");
    EXPECT_EQ(system.record, looks(10));
    EXPECT_EQ(test::log_lines(), Texts{});
}

TEST_F(RdpWindowWatch, SightingsAndMissesAddUpOverGaps) {
    struct Case {
        const char* polls;
        int looked;
        bool reset;
    };
    const Case cases[] = {
        {"-+-+-+-+-+-+-+-+-+-+", 19, false}, // the tenth miss comes first
        {"+-+-+-+-+-+-+-+-+-+-", 19, true},  // the tenth sighting does
        {"---------++++++++++-", 19, true},  // nine misses, ten sightings
        {"+++++++++----------+", 19, false}, // nine sightings, ten misses
        {"---------+++++++++-+", 19, false}, // both at nine, then a miss
        {"---------++++++++++", 19, true},   // both at nine, then a sighting
        {"+++++-----+++++-----", 15, true},  {"-----+++++-----+++++", 15, false},
    };
    for (const Case& each : cases) {
        test::ScriptedOs system;
        system.outputs = outputs_of(each.polls);
        watch_rdp_window("remote-view");
        Texts expected = looks(each.looked);
        if (each.reset) expected.push_back("run /usr/bin/resetusb.sh");
        EXPECT_EQ(system.record, expected) << each.polls;
    }
}

TEST_F(RdpWindowWatch, OnlyMoreThanFiveCharactersAreAWindow) {
    test::ScriptedOs system;
    system.outputs.assign(10, "12345");
    watch_rdp_window("remote-view");
    EXPECT_EQ(system.record, looks(10));
}

// --- Starting --------------------------------------------------------------------------------

TEST_F(StartWatch, RunsTheWatchOnAThreadWithItsOwnCopyOfThePattern) {
    test::ScriptedOs system;
    system.outputs = outputs_of("+");
    char pattern[] = "remote-view";
    EXPECT_TRUE(start_watch(watch_for_outcome, pattern));
    EXPECT_EQ(system.record, Texts{"thread"});
    pattern[0] = '\0'; // whoever started the watch has gone on
    ASSERT_EQ(system.threads.size(), 1U);
    system.threads[0]();
    EXPECT_EQ(system.record, then({"thread"}, then(looks(1), {"run " + success})));
}

TEST_F(StartWatch, WithoutAThreadIsLogged) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(start_watch(watch_for_outcome, "remote-view"));
    EXPECT_EQ(system.record, Texts{"thread"});
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @launchclient thread create fail"});
}

} // namespace qvtc::clients
