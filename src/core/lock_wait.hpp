#pragma once

#include <chrono>

namespace qvtc {

/// How long this thread waits for locks while it lives, all of them together. One
/// inside another can only shorten the wait. Each call of the library has one, so
/// that a call that changes many settings does not wait for each of them anew.
class LockWait {
  public:
    using Duration = std::chrono::milliseconds;
    static constexpr Duration longest = std::chrono::seconds(10);

    explicit LockWait(Duration most = longest);
    LockWait(const LockWait&) = delete;
    LockWait& operator=(const LockWait&) = delete;
    ~LockWait();

    /// What is left for this thread's next lock.
    static Duration left();
    /// Counts what a lock has waited.
    static void spend(Duration waited);

  private:
    Duration left_;
    LockWait* outer_;
};

} // namespace qvtc
