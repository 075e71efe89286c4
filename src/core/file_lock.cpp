#include "core/file_lock.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace qvtc {

namespace {

using Clock = std::chrono::steady_clock;

/// 0 or an errno.
int wait_for_lock(int descriptor) {
    const auto start = Clock::now();
    const auto waited = [start] {
        return std::chrono::duration_cast<LockWait::Duration>(Clock::now() - start);
    };
    const LockWait::Duration most = LockWait::left();
    int error = 0;
    bool in_vain = false;
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        error = errno;
        if (error == EINTR) continue;
        if (error != EWOULDBLOCK) return error;
        if (in_vain = waited() >= most; in_vain) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (error == EWOULDBLOCK) LockWait::spend(in_vain ? most : std::min(most, waited()));
    return in_vain ? ETIMEDOUT : 0;
}

/// Whether the path still leads to the open file: its former holder may have
/// renamed or removed it while we waited.
bool is_still_at(int descriptor, const std::string& path) {
    struct stat held {};
    struct stat there {};
    return fstat(descriptor, &held) == 0 && lstat(path.c_str(), &there) == 0 &&
           held.st_dev == there.st_dev && held.st_ino == there.st_ino;
}

bool cannot_exist(int error) { return error == ENOENT || error == ENOTDIR || error == EROFS; }

} // namespace

int open_locked(const std::string& path) {
    for (;;) {
        const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (file < 0) return -1;
        const int error = wait_for_lock(file);
        if (error == 0 && is_still_at(file, path)) return file;
        close(file);
        if (error == 0) continue;
        errno = error;
        return -1;
    }
}

FileLock::FileLock(const std::string& path)
    : file_(open_locked(path)), error_(file_.is_open() || cannot_exist(errno) ? 0 : errno) {}

} // namespace qvtc
