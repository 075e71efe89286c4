#pragma once

#include "qvtcctl/base/processes.hpp"
#include "qvtcctl/connections/record.hpp"

#include <vector>

namespace qvtc::qvtcctl {

/// The running clients of a type.
std::vector<Process> running_clients(const ConnectionType& type);

/// Whether that client was started for that connection: the address stands in its arguments as the
/// library gives it, and for RDP the name as the window's title.
bool serves(const Process& client, const ConnectionType& type, const Record& record);

} // namespace qvtc::qvtcctl
