#pragma once

#include <ctime>

namespace qvtc {

/// This moment's local time, in the zone that is in force now.
std::tm local_now();

} // namespace qvtc
