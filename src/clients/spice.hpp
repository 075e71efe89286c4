#pragma once

#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// What the command line of a SPICE session is made of.
struct SpiceFacts {
    connections::Record record;
    bool all_effects_off = false;
    bool usb_denied = false;
};

/// The command line of `remote-viewer`, without its redirection.
std::string spice_command_line(const SpiceFacts& facts);

/// Starts the SPICE session of a stored record and its watch.
bool launch_spice(connections::ConnectionId id);

} // namespace qvtc::clients
