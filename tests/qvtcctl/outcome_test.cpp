#include "qvtcctl/outcome.hpp"

#include <vector>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using std::chrono::milliseconds;
using States = std::vector<State>;

constexpr const char* no_outcome = "0";
constexpr const char* connected = "1";
constexpr const char* unknown_error = "dW5rb3duIGVycm9yIQ==";

/// The states after looks that are half a second apart, the first one right after the launch.
States judge(std::string_view type, std::vector<Look> looks) {
    LaunchJudge judge(*find_type(type));
    States states;
    milliseconds now{100};
    for (Look& look : looks) {
        look.since_launch = now;
        states.push_back(judge.judge(look));
        now += milliseconds(500);
    }
    return states;
}

Look rdp_look(const char* status, bool runs, Sight window) {
    return {milliseconds(0), status, runs, window, WatcherVerdict::none};
}
Look other_look(const char* status, bool runs, Sight window, WatcherVerdict verdict) {
    return {milliseconds(0), status, runs, window, verdict};
}

const Look not_there = rdp_look(unknown_error, false, Sight::unknown);
const Look runs = rdp_look(no_outcome, true, Sight::absent);
const Look shows = rdp_look(no_outcome, true, Sight::seen);

TEST(QvtcctlOutcome, RdpIsConnectedWhenItsWindowHasStayedTwoSeconds) {
    EXPECT_EQ(judge("rdp", {runs, shows, shows, shows, shows, shows}),
              (States{State::waiting, State::window_open, State::window_open, State::window_open,
                      State::window_open, State::connected}));
}

TEST(QvtcctlOutcome, RdpIsNotConnectedBecauseTheLibrarySaysSo) {
    const Look told = rdp_look(connected, true, Sight::absent);
    EXPECT_EQ(judge("rdp", std::vector<Look>(20, told)), States(20, State::waiting));
}

TEST(QvtcctlOutcome, AWindowThatGoesAgainIsNoConnection) {
    EXPECT_EQ(judge("rdp", {shows, shows, shows, shows, not_there, not_there}),
              (States{State::window_open, State::window_open, State::window_open,
                      State::window_open, State::ended, State::failed}));
    EXPECT_EQ(judge("rdp", {shows, shows, shows, runs, shows, shows, shows, shows}).back(),
              State::window_open);
}

TEST(QvtcctlOutcome, AnRdpClientThatIsGoneHasFailedAtTheSecondLook) {
    EXPECT_EQ(judge("rdp", {runs, not_there, not_there}),
              (States{State::waiting, State::ended, State::failed}));
    EXPECT_EQ(judge("rdp", {not_there, not_there}), (States{State::starting, State::failed}));
}

TEST(QvtcctlOutcome, AClientThatIsLateInTheProcessListHasNotFailed) {
    EXPECT_EQ(judge("rdp", {not_there, runs, shows}),
              (States{State::starting, State::waiting, State::window_open}));
}

TEST(QvtcctlOutcome, AClientThatNeverCameHasFailedEvenIfTheLibraryDoesNotSaySo) {
    const Look silent = rdp_look(connected, false, Sight::unknown);
    EXPECT_EQ(judge("rdp", {silent, silent, silent, silent}),
              (States{State::starting, State::starting, State::starting, State::failed}));
}

TEST(QvtcctlOutcome, AFailureInTheLogOfAnRdpClientThatRunsIsBelievedAfterTwoSeconds) {
    const Look told = rdp_look(unknown_error, true, Sight::absent);
    EXPECT_EQ(
        judge("rdp", {told, told, told, told, told}),
        (States{State::waiting, State::waiting, State::waiting, State::waiting, State::failed}));
    const Look window = rdp_look(unknown_error, true, Sight::seen);
    EXPECT_EQ(judge("rdp", {window, window, window, window, window}).back(), State::connected);
}

const Look viewer_runs = other_look(connected, true, Sight::absent, WatcherVerdict::none);
const Look viewer_good = other_look(connected, true, Sight::seen, WatcherVerdict::connected);
const Look viewer_bad = other_look(connected, true, Sight::absent, WatcherVerdict::failed);

TEST(QvtcctlOutcome, OtherClientsFollowTheWatchersVerdict) {
    for (const std::string_view type : {"spice", "horizon", "vnc", "web"}) {
        EXPECT_EQ(judge(type, {viewer_runs, viewer_good, viewer_good}),
                  (States{State::waiting, State::window_open, State::connected}))
            << type;
        EXPECT_EQ(judge(type, {viewer_runs, viewer_runs, viewer_bad}),
                  (States{State::waiting, State::waiting, State::failed}))
            << type;
    }
}

TEST(QvtcctlOutcome, AFailureInASpiceLogOutweighsTheWindow) {
    const Look told = other_look(unknown_error, true, Sight::seen, WatcherVerdict::connected);
    EXPECT_EQ(judge("spice", {viewer_good, told, told}),
              (States{State::window_open, State::connecting, State::failed}));
}

TEST(QvtcctlOutcome, AFailureThatAViewersLogNamesOutweighsTheWindowToo) {
    Look told = viewer_good;
    told.log_names_failure = true;
    EXPECT_EQ(judge("vnc", {viewer_runs, told, told}),
              (States{State::waiting, State::connecting, State::failed}));
}

// SPICE's viewer shows a window at once, and says later whether the connection is there.
TEST(QvtcctlOutcome, AViewerThatSaysThatItIsStillConnectingIsNotConnected) {
    Look connecting = other_look(no_outcome, true, Sight::seen, WatcherVerdict::connected);
    connecting.client_talks = true;
    Look opened = connecting;
    opened.status = connected;
    EXPECT_EQ(judge("spice", {connecting, connecting, connecting, opened, opened}),
              (States{State::connecting, State::connecting, State::connecting, State::window_open,
                      State::connected}));
    // One that says nothing at all is judged by its window.
    Look silent = connecting;
    silent.client_talks = false;
    EXPECT_EQ(judge("spice", {silent, silent}), (States{State::window_open, State::connected}));
}

TEST(QvtcctlOutcome, OneLookTellsHowAConnectionStands) {
    struct Case {
        std::string_view type;
        Look look;
        State state;
    };
    const Case cases[] = {
        {"rdp", not_there, State::not_running},
        {"rdp", runs, State::waiting},
        {"rdp", shows, State::connected},
        {"rdp", rdp_look(unknown_error, true, Sight::seen), State::connected},
        {"rdp", rdp_look(unknown_error, true, Sight::absent), State::failed},
        {"rdp", rdp_look(connected, true, Sight::unknown), State::waiting},
        {"spice", other_look(unknown_error, true, Sight::seen, WatcherVerdict::connected),
         State::failed},
        {"vnc", viewer_good, State::connected},
        {"vnc", viewer_bad, State::failed},
        {"vnc", viewer_runs, State::waiting},
        {"vnc", other_look(connected, false, Sight::unknown, WatcherVerdict::connected),
         State::not_running},
    };
    Look talking = other_look(no_outcome, true, Sight::seen, WatcherVerdict::connected);
    talking.client_talks = true;
    EXPECT_EQ(state_of(*find_type("spice"), talking), State::connecting);
    EXPECT_EQ(state_of(*find_type("rdp"), talking), State::connected);
    talking.log_names_failure = true;
    EXPECT_EQ(state_of(*find_type("spice"), talking), State::failed);
    for (const Case& c : cases) EXPECT_EQ(state_of(*find_type(c.type), c.look), c.state) << c.type;
}

TEST(QvtcctlOutcome, TheClientStatusFileHoldsTheVerdict) {
    EXPECT_EQ(verdict_in("0x00000000 connect success\n"), WatcherVerdict::connected);
    EXPECT_EQ(verdict_in("0x00000001 connect failed\n"), WatcherVerdict::failed);
    EXPECT_EQ(verdict_in("\n"), WatcherVerdict::none);
    EXPECT_EQ(verdict_in(""), WatcherVerdict::none);
}

TEST(QvtcctlOutcome, EveryStateHasAName) {
    for (const State state :
         {State::starting, State::waiting, State::ended, State::connecting, State::window_open,
          State::connected, State::failed, State::not_running}) {
        EXPECT_FALSE(words_of(state).empty());
        EXPECT_FALSE(name_of(state).empty());
    }
}

} // namespace
} // namespace qvtc::qvtcctl
