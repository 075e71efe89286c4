#pragma once

#include <string>

#include "core/descriptor.hpp"
#include "core/lock_wait.hpp"

namespace qvtc {

/// Opens a file for reading and writing, made with mode 0600 if it is missing, and
/// locks it; waits for as long as LockWait allows. No link is followed. Gives the
/// descriptor, which holds the lock until it is closed; -1, and the reason in
/// errno (ETIMEDOUT: another holder kept it), when that was not possible.
int open_locked(const std::string& path);

/// A lock on a file, held for a scope by one thread of one process at a time. It
/// ends with its holder. The file stays; its mode keeps other users from locking it.
class FileLock {
  public:
    explicit FileLock(const std::string& path);

    /// 0 when the lock is held, or when its file cannot be made at all (no such
    /// directory, or a read-only one): then there is nothing to take turns at.
    /// Else the errno for which it is not.
    int error() const { return error_; }
    bool acquired() const { return error_ == 0; }

  private:
    Descriptor file_;
    int error_;
};

} // namespace qvtc
