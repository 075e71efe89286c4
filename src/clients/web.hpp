#pragma once

#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// The command line of `firefox`, without its redirection.
std::string web_command_line(const connections::Record& record);

/// Starts the web session of a stored record and its watch.
bool launch_web(connections::ConnectionId id);

} // namespace qvtc::clients
