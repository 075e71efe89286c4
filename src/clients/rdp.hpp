#pragma once

#include <string>

#include "clients/rdp_facts.hpp"
#include "connections/types.hpp"

namespace qvtc::clients {

/// The command line of `xfreerdp`, without its redirection.
std::string rdp_command_line(const RdpFacts& facts);

/// The screen size in what the size query prints; empty when it is none.
std::string screen_size_in(std::string output);

/// Starts the RDP session of a stored record and its watch. False, with an
/// error in the log, when a password cannot be decoded (nothing is started
/// then) or the watch cannot be started.
bool launch_rdp(connections::ConnectionId id);

} // namespace qvtc::clients
