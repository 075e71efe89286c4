#include "qvtcctl/verb/change_lock.hpp"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* lock_file = "/run/qvtcctl.lock";
constexpr mode_t owner_only = 0600;

} // namespace

ChangeLock::ChangeLock()
    : descriptor_(open(lock_file, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, owner_only)) {
    if (descriptor_ < 0) return;
    while (flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
    }
}

ChangeLock::~ChangeLock() {
    if (descriptor_ >= 0) close(descriptor_);
}

} // namespace qvtc::qvtcctl
