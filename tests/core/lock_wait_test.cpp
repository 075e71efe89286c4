#include "core/lock_wait.hpp"

#include <gtest/gtest.h>
#include <thread>

namespace qvtc::test {

using namespace std::chrono_literals;

TEST(LockWait, IsTenSecondsForEachLockOutsideOfAnyScope) {
    LockWait::spend(9s);
    EXPECT_EQ(LockWait::left(), 10s);
}

TEST(LockWait, IsSharedByAllLocksOfItsScope) {
    const LockWait wait;
    LockWait::spend(4s);
    EXPECT_EQ(LockWait::left(), 6s);
    LockWait::spend(7s);
    EXPECT_EQ(LockWait::left(), 0s);
}

TEST(LockWait, CanOnlyBeShortenedInside) {
    const LockWait outer(3s);
    {
        const LockWait inner(1s);
        EXPECT_EQ(LockWait::left(), 1s);
        LockWait::spend(1s);
        EXPECT_EQ(LockWait::left(), 0s);
    }
    EXPECT_EQ(LockWait::left(), 2s);
    const LockWait longer(1min);
    EXPECT_EQ(LockWait::left(), 2s);
}

TEST(LockWait, IsThatOfOneThread) {
    const LockWait none(0s);
    std::thread([] { EXPECT_EQ(LockWait::left(), 10s); }).join();
    EXPECT_EQ(LockWait::left(), 0s);
}

} // namespace qvtc::test
