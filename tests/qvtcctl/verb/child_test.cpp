#include "qvtcctl/verb/child.hpp"

#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

namespace qvtc::qvtcctl {

namespace {

int result_of(const std::function<int()>& call) {
    return run_in_child(call, Chatter::dropped, [](long) {});
}

} // namespace

TEST(QvtcctlChild, GivesWhatTheCallReturned) {
    EXPECT_EQ(result_of([] { return 0; }), 0);
    EXPECT_EQ(result_of([] { return 7; }), 7);
    EXPECT_EQ(result_of([] { return -1; }), 255);
}

TEST(QvtcctlChild, ADeadChildIsAFailure) {
    EXPECT_EQ(result_of([] { return raise(SIGKILL); }), 255);
}

TEST(QvtcctlChild, TellsHowLongItHasTaken) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    long told = -1;
    int times = 0;
    const int result = run_in_child(
        [&] {
            char go = 0;
            return read(ends[0], &go, 1) == 1 ? 3 : 4;
        },
        Chatter::dropped,
        [&](long seconds) {
            told = seconds;
            if (++times == 2) {
                EXPECT_EQ(write(ends[1], "g", 1), 1);
            }
        });
    EXPECT_EQ(result, 3);
    EXPECT_GE(told, 0);
    EXPECT_GE(times, 2);
    close(ends[0]);
    close(ends[1]);
}

} // namespace qvtc::qvtcctl
