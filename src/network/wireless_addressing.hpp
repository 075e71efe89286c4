#pragma once

#include <string>

#include "network/interface.hpp"

/// The IPv4 settings of the wireless link.
namespace qvtc::network {

/// The settings in use, with the stored mode. Their text goes to standard error,
/// where front-ends look for it.
NetConf wireless_conf();

/// Stores and applies the settings in a parameter string. False, with nothing
/// changed and an error in the log, for one of fewer than four characters and
/// for one without "conf".
bool set_wireless_conf(const std::string& params);

/// Edits the network's profile and restarts the link; null for the list stands
/// for DHCP. The status of the last command.
int apply_wireless_conf(const char* list);

} // namespace qvtc::network
