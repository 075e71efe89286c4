#pragma once

#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// The command line of `vncviewer`, without its redirection.
std::string vnc_command_line(const connections::Record& record);

/// Starts the VNC session of a stored record and its watch.
bool launch_vnc(connections::ConnectionId id);

} // namespace qvtc::clients
