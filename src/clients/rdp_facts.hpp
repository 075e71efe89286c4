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

} // namespace qvtc::clients
