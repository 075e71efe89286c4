#pragma once

namespace qvtc::system {

/// Asks the terminal to start anew, or to switch itself off. Both come back at
/// once; the terminal's service manager does the rest.
void reboot();
void shut_down();

} // namespace qvtc::system
