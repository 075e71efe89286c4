#include "core/lock_wait.hpp"

#include <algorithm>

namespace qvtc {

namespace {

thread_local LockWait* innermost = nullptr;

} // namespace

LockWait::LockWait(Duration most) : left_(std::min(most, left())), outer_(innermost) {
    innermost = this;
}

LockWait::~LockWait() { innermost = outer_; }

LockWait::Duration LockWait::left() {
    return innermost != nullptr ? std::max(innermost->left_, Duration::zero()) : longest;
}

void LockWait::spend(Duration waited) {
    for (LockWait* each = innermost; each != nullptr; each = each->outer_) each->left_ -= waited;
}

} // namespace qvtc
