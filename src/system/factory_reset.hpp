#pragma once

namespace qvtc::system {

/// Returns the terminal to its factory state and restarts it: connections (but
/// those with the numbers 192 to 255), settings, wireless networks and logs go,
/// the wired interfaces ask DHCP, sound and screens are set up anew. What is kept:
/// the stored wired addressing, the device identity, the choice of the default
/// route. No step's failure stops the later ones.
void reset_to_factory_settings();

} // namespace qvtc::system
