#pragma once

#include "qvtcctl/base/processes.hpp"

#include <vector>

namespace qvtc::qvtcctl {

/// Ends these clients. Refuses when one of them does not end.
void end_clients(const std::vector<Process>& clients);

} // namespace qvtc::qvtcctl
