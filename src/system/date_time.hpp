#pragma once

#include <string>
#include <vector>

#include "core/json.hpp"

namespace qvtc::system {

/// The lines of the configuration that the clock's synchronisation reads as
/// shell; an empty host for none.
std::vector<std::string> synchronisation_lines(const std::string& host);

/// The time in milliseconds since 1970 and what was last asked for, as an object
/// of the texts "systemTime", "useNTP", "ntpHost", "region" and "city".
Json date_time();

/// Sets clock, zone and synchronisation from a parameter string, and keeps it.
void set_date_time(const std::string& params);

} // namespace qvtc::system
