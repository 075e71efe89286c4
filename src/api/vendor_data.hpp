#pragma once

#include "core/json.hpp"

/// What a terminal's vendor has left in its numbered store. Every call gives a new
/// object, or null when there is none or it is no JSON. Safe from several threads.
namespace qvtc::api {

Json vendor_marker();
Json vendor_info();

// These two keep their text for the life of the process once it is long enough: a
// later change of the store is not seen. It is exported as `goemdata` and `gfeature`.

Json vendor_data();
/// Null also for a text of 100 characters or fewer.
Json vendor_features();

} // namespace qvtc::api
