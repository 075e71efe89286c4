#include "qvtcctl/clients/outcome.hpp"

#include <vector>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using std::chrono::milliseconds;
using States = std::vector<State>;

/// The states after looks that are half a second apart, the first one right after the launch.
States judge(std::vector<Look> looks) {
    LaunchJudge judge;
    States states;
    milliseconds now{100};
    for (Look& look : looks) {
        look.since_launch = now;
        states.push_back(judge.judge(look));
        now += milliseconds(500);
    }
    return states;
}

Look look(bool runs, Sight window, bool library_tells_failure = false) {
    return {milliseconds(0), runs, window, library_tells_failure, Said::nothing};
}
Look look(Said said, Sight window = Sight::absent) {
    return {milliseconds(0), true, window, false, said};
}

const Look not_there = look(false, Sight::unknown, true);
const Look runs = look(true, Sight::absent);
const Look shows = look(true, Sight::seen);

TEST(QvtcctlOutcome, ASilentClientIsConnectedWhenItsWindowHasStayedTwoSeconds) {
    EXPECT_EQ(judge({runs, shows, shows, shows, shows, shows}),
              (States{State::waiting, State::window_open, State::window_open, State::window_open,
                      State::window_open, State::connected}));
}

TEST(QvtcctlOutcome, ASlowClientHasNotFailedHoweverLongItTakes) {
    EXPECT_EQ(judge(std::vector<Look>(120, runs)), States(120, State::waiting));
    EXPECT_EQ(judge(std::vector<Look>(120, look(Said::connecting))),
              States(120, State::connecting));
}

TEST(QvtcctlOutcome, AWindowThatGoesAgainIsNoConnection) {
    EXPECT_EQ(judge({shows, shows, shows, shows, not_there, not_there}),
              (States{State::window_open, State::window_open, State::window_open,
                      State::window_open, State::ended, State::failed}));
    EXPECT_EQ(judge({shows, shows, shows, runs, shows, shows, shows, shows}).back(),
              State::window_open);
}

TEST(QvtcctlOutcome, AClientThatIsGoneForAReasonHasFailedAtTheSecondLook) {
    EXPECT_EQ(judge({runs, not_there, not_there}),
              (States{State::waiting, State::ended, State::failed}));
    EXPECT_EQ(judge({not_there, not_there}), (States{State::starting, State::failed}));
}

TEST(QvtcctlOutcome, AClientThatIsLateInTheProcessListHasNotFailed) {
    EXPECT_EQ(judge({not_there, runs, shows}),
              (States{State::starting, State::waiting, State::window_open}));
}

TEST(QvtcctlOutcome, AClientThatNeverCameHasFailedWhateverIsOnTheScreen) {
    const Look silent = look(false, Sight::seen);
    EXPECT_EQ(judge({silent, silent, silent, silent}),
              (States{State::starting, State::starting, State::starting, State::failed}));
}

TEST(QvtcctlOutcome, WhatTheLibrarySaysOfAClientThatRunsIsBelievedAfterTwoSeconds) {
    const Look told = look(true, Sight::absent, true);
    EXPECT_EQ(
        judge({told, told, told, told, told}),
        (States{State::waiting, State::waiting, State::waiting, State::waiting, State::failed}));
    const Look window = look(true, Sight::seen, true);
    EXPECT_EQ(judge({window, window, window, window, window}).back(), State::connected);
}

// A viewer shows a window at once and says later whether the connection is there; another one has
// a window of which nobody knows that it is one.
TEST(QvtcctlOutcome, AClientThatTalksIsJudgedByItsWords) {
    for (const Sight window : {Sight::seen, Sight::absent, Sight::unknown}) {
        const Look connecting = look(Said::connecting, window);
        const Look connected = look(Said::connected, window);
        const Look failed = look(Said::failed, window);
        EXPECT_EQ(
            judge(
                {connecting, connecting, connecting, connecting, connecting, connected, connected}),
            (States{State::connecting, State::connecting, State::connecting, State::connecting,
                    State::connecting, State::connecting, State::connected}));
        EXPECT_EQ(judge({connecting, failed, failed}),
                  (States{State::connecting, State::connecting, State::failed}));
        EXPECT_EQ(judge({connected, failed, failed}).back(), State::failed);
    }
}

TEST(QvtcctlOutcome, AClientThatAsksForAPasswordIsWaitedFor) {
    const Look asking = look(Said::asking, Sight::seen);
    const Look connected = look(Said::connected, Sight::seen);
    EXPECT_EQ(judge({asking, asking, asking, asking, asking, connected, connected}),
              (States{State::asking, State::asking, State::asking, State::asking, State::asking,
                      State::connecting, State::connected}));
}

TEST(QvtcctlOutcome, OneLookTellsHowAConnectionStands) {
    struct Case {
        Look look;
        State state;
    };
    const Case cases[] = {
        {not_there, State::not_running},
        {runs, State::waiting},
        {shows, State::connected},
        {look(true, Sight::unknown), State::waiting},
        {look(true, Sight::seen, true), State::connected},
        {look(true, Sight::absent, true), State::failed},
        {look(Said::connecting, Sight::seen), State::connecting},
        {look(Said::asking, Sight::seen), State::asking},
        {look(Said::failed, Sight::seen), State::failed},
        {look(Said::connected), State::connected},
    };
    for (const Case& c : cases) EXPECT_EQ(state_of(c.look), c.state) << name_of(c.state);
}

TEST(QvtcctlOutcome, EveryStateHasAName) {
    for (const State state :
         {State::starting, State::waiting, State::ended, State::connecting, State::asking,
          State::window_open, State::connected, State::failed, State::not_running}) {
        EXPECT_FALSE(words_of(state).empty());
        EXPECT_FALSE(name_of(state).empty());
    }
}

} // namespace
} // namespace qvtc::qvtcctl
