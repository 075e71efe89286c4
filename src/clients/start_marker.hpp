#pragma once

#include <string>

/// The line that a launch begins its client's log with, by which the diagnosis
/// later tells this launch's words from those of earlier ones.
namespace qvtc::clients {

/// Makes the marker of this second and stores it as the setting of the last one.
std::string store_start_marker();

} // namespace qvtc::clients
