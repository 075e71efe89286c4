#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/connections/record.hpp"
#include "qvtcctl/verb/windows.hpp"

#include <string>

namespace qvtc::qvtcctl {

/// "RDP, SPICE, ...": the types whose clients are started from here.
std::string launchable_types();

/// Refuses a type whose clients only the terminal's front-end starts.
void require_launchable(const ConnectionType& type);

/// How every answer about the client of a connection begins in JSON.
Json connection_head(unsigned id, const ConnectionType& type, const Record& record);

/// A line of its own when the state is only half of the truth.
std::string screen_remark(Sight window);

} // namespace qvtc::qvtcctl
