#pragma once

#include "qvtcctl/quiet.hpp"

namespace qvtc::qvtcctl {

/// Lets the library start a client in a process of its own, without a controlling terminal, and
/// returns when the client has been started; true when the library said so. That process stays
/// until the library's watcher thread has ended, which takes it half a minute at most: the
/// watcher writes the outcome for all who wait for it, also when this program has long ended.
/// To be called while this program has one thread.
bool launch_in_own_process(unsigned id, Chatter chatter);

} // namespace qvtc::qvtcctl
