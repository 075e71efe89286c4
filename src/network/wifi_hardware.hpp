#pragma once

namespace qvtc::network {

/// Whether there is Wi-Fi hardware and it is not disabled on this terminal.
bool wireless_present();

} // namespace qvtc::network
