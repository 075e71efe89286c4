#pragma once

#include <optional>
#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// What the command line of an RDP session is made of.
struct RdpFacts {
    connections::Record record;
    std::optional<std::string> password;         ///< decoded
    std::optional<std::string> gateway_password; ///< decoded
    std::string screen_size;                     ///< WIDTHxHEIGHT; empty when unknown
    bool audio_available = false;
    bool usb_denied = false;
    bool screens_cloned = false;
    bool vga_left_of_hdmi = false;
    bool notebook = false;
};

/// The command line of `xfreerdp`, without its redirection.
std::string rdp_command_line(const RdpFacts& facts);

/// The screen size in what the size query prints; empty when it is none.
std::string screen_size_in(std::string output);

/// Starts the RDP session of a stored record and its watch. False, with an
/// error in the log, when a password cannot be decoded (nothing is started
/// then) or the watch cannot be started.
bool launch_rdp(connections::ConnectionId id);

} // namespace qvtc::clients
