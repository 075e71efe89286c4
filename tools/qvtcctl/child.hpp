#pragma once

#include "qvtcctl/quiet.hpp"

#include <functional>

namespace qvtc::qvtcctl {

/// Lets a longer call of the library run in a process of its own, and returns what it returned
/// (as an exit status: 0 to 255; 255 also when it died). Meanwhile tells a few times a second how
/// many seconds it has taken. To be called while this program has one thread.
int run_in_child(const std::function<int()>& call, Chatter chatter,
                 const std::function<void(long seconds)>& tell);

} // namespace qvtc::qvtcctl
