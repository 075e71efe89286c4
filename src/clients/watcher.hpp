#pragma once

#include <string>

/// Watching for a client's window after its launch.
namespace qvtc::clients {

/// Looks for a window whose line in the X window tree matches `pattern`, once a
/// second and ten times at most, and writes the outcome into the client-status
/// file.
void watch_for_outcome(const std::string& pattern);

/// The same search for RDP, whose outcome is diagnosed from its log: the status
/// file is only emptied. Ends after ten sightings, having run the USB reset
/// script, or after ten misses; they need not be consecutive.
void watch_rdp_window(const std::string& pattern);

using Watch = void (*)(const std::string& pattern);

/// Starts a watch on a thread of its own; false, and an error in the log, when
/// there is none to be had. The client is running by then.
bool start_watch(Watch watch, const char* pattern);

} // namespace qvtc::clients
