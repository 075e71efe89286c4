#pragma once

namespace qvtc::system {

/// Puts the network back on its feet: a plain supplicant configuration, no
/// static gateway, addresses from DHCP on every interface, networking restarted.
void repair_network();

} // namespace qvtc::system
