#pragma once

#include "qvtcctl/verb/quiet.hpp"

#include <functional>
#include <string>

namespace qvtc::qvtcctl {

/// Called a few times a second with the seconds that something has taken so far.
using WhileWaiting = std::function<void(long seconds)>;

/// Lets a longer call of the library run in a process of its own, and returns what it returned
/// (as an exit status: 0 to 255; 255 also when it died). To be called while this program has one
/// thread.
int run_in_child(const std::function<int()>& call, Chatter chatter,
                 const WhileWaiting& while_waiting);

/// Writes a line to standard error, once, when a second has passed.
WhileWaiting said_after_a_moment(const std::string& line);

} // namespace qvtc::qvtcctl
