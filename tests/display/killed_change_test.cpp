// A change of the resolution that is killed in the middle.

#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <chrono>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qvtc::test {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

class KilledChange : public DisplayTerminal {
  protected:
    const StandIn script{"/var/lib/ralo/display.sh"};
};

const Texts old_state = {"1", "1", "0"};
const Texts new_state = {"1", "5", "1"};

Texts state() {
    return {stored_setting(applied_key), stored_setting(requested_key), stored_setting(waits_key)};
}

/// Kills a change, with all that it has started, after that time.
void kill_a_change(microseconds after) {
    const pid_t changer = fork();
    if (changer == 0) {
        setpgid(0, 0);
        setdispconf("1920x1080");
        _exit(0);
    }
    setpgid(changer, changer);
    std::this_thread::sleep_for(after);
    kill(-changer, SIGKILL);
    waitpid(changer, nullptr, 0);
    EXPECT_TRUE(wait_until([&] { return kill(-changer, 0) != 0; }));
}

microseconds whole_change() {
    const auto begin = Clock::now();
    setdispconf("1920x1080");
    return std::chrono::duration_cast<microseconds>(Clock::now() - begin);
}

} // namespace

TEST_F(KilledChange, LeavesTheOldStateOrTheNewOneAndCanBeReverted) {
    store_settings({{applied_key, "1"}, {requested_key, "1"}, {waits_key, "0"}});
    const microseconds longest = whole_change();
    EXPECT_EQ(qvrestoredispconf(), 0);
    ASSERT_EQ(state(), old_state);
    std::mt19937 random(20261121);
    // Most of the time goes to the two shells in the end: early moments are the ones of interest.
    std::uniform_real_distribution<double> share(0, 1);
    const auto moment = [&] {
        return microseconds(
            static_cast<long>(static_cast<double>(longest.count()) * std::pow(share(random), 4)));
    };
    const auto end = Clock::now() + std::chrono::seconds(20);
    int old_ones = 0;
    int new_ones = 0;
    for (int kills = 0; kills < 150 && Clock::now() < end; ++kills) {
        kill_a_change(moment());
        const bool changed = state() == new_state;
        ASSERT_TRUE(changed || state() == old_state);
        ++(changed ? new_ones : old_ones);
        EXPECT_EQ(qvisdispchanged(), changed ? 1 : 0);

        EXPECT_EQ(qvrestoredispconf(), 0);
        ASSERT_EQ(state(), old_state);
        ASSERT_EQ(read_file("/var/lib/ralo/res"), "1024x768\n");
        ASSERT_EQ(read_file("/etc/X11/xorg.conf"), golden_file("minimal.conf"));
        EXPECT_EQ(qvisdispchanged(), 0);
    }
    // They were killed before the store and after it.
    EXPECT_GT(old_ones, 0);
    EXPECT_GT(new_ones, 0);
}

} // namespace qvtc::test
