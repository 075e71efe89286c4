#pragma once

#include <optional>
#include <string>

#include "core/json.hpp"
#include "network/interface.hpp"

/// The wired ports, and what writing an interface's settings takes.
namespace qvtc::network {

/// Whether the machine has an interface of that name.
bool has_interface(const std::string& device);

/// A configuration as an object of six texts.
Json conf_object(const NetConf& conf);

/// The configuration in use of an interface.
Json wired_conf(const std::string& device);

/// The same of eth0, null when there is none; and of eth1, with "none" for its
/// mode and empty members when there is none.
Json main_port_conf();
Json extra_port_conf();

/// Stores and applies the settings in a parameter string, and restarts the
/// interface. The status of `ifup`; -1, with nothing changed, for a string of
/// fewer than four characters and for one without "conf".
int set_wired_conf(const std::string& device, const std::string& params);

/// Writes the interface's files and restarts it: the status of `ifup`. With
/// `keep_file` the interface file and the gateway stay as they are.
int apply_wired_conf(const std::string& device, const char* list, bool keep_file);

/// The status of `ifup`.
int restart_interface(const std::string& device);

/// Puts an interface file for DHCP in place, and touches nothing else; false,
/// with the reason in the log, when it could not be written.
bool reset_wired(const std::string& device);

} // namespace qvtc::network
