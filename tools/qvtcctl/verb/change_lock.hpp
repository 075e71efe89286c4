#pragma once

namespace qvtc::qvtcctl {

/// While it lives, no second qvtcctl changes connections: a change reads, merges and writes, and
/// two at once would lose one of the two. Waits for the other; does without when the lock file
/// cannot be made.
class ChangeLock {
  public:
    ChangeLock();
    ~ChangeLock();
    ChangeLock(const ChangeLock&) = delete;
    ChangeLock& operator=(const ChangeLock&) = delete;

  private:
    int descriptor_;
};

} // namespace qvtc::qvtcctl
