#pragma once

#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// The command line of `remote-viewer`, without its redirection.
std::string spice_command_line(const connections::Record& record, bool usb_denied);

/// Starts the SPICE session of a stored record and its watch.
bool launch_spice(connections::ConnectionId id);

} // namespace qvtc::clients
