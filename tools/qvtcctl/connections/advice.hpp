#pragma once

#include "qvtcctl/connections/record.hpp"

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// What a new connection of a type has when nothing else is said. An RDP client that is told no
/// colour depth loses its session at once.
Record new_record(const ConnectionType& type);

/// What a person should know about values that are stored but will not have the effect that
/// their names suggest: one sentence each, empty when there is nothing to say. "named" are the
/// places of the fields that the person gave.
std::vector<std::string> advice_on(const ConnectionType& type, const Record& record,
                                   const std::vector<std::size_t>& named);

} // namespace qvtc::qvtcctl
