#pragma once

#include <optional>
#include <string>

#include "connections/record.hpp"

namespace qvtc::clients {

/// What the command line of a Horizon session is made of.
struct HorizonFacts {
    connections::Record record;
    std::optional<std::string> password; ///< decoded
    std::string language;                ///< setting of the interface language
    std::string menu_bar;                ///< setting of the menu bar
    bool screens_cloned = false;
};

/// The command line of `vmware-view`, which runs in the background.
std::string horizon_command_line(const HorizonFacts& facts);

/// Starts the Horizon session of a stored record and its watch. False when the
/// password cannot be decoded, by when former clients have been ended already.
bool launch_horizon(connections::ConnectionId id);

} // namespace qvtc::clients
