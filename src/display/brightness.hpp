#pragma once

#include <string>

#include "core/json.hpp"

namespace qvtc::display {

/// Sets the brightness of every connected output from "brightness=PERCENT", 20
/// to 100; what lies outside is taken for the nearer of the two. Stores the
/// percentage as it was given. Without that key it does nothing.
void set_brightness(const std::string& params);

/// {"brightness": PERCENT} of the first output, empty when none tells one.
/// Leaves what the X server said in the shared scratch area.
Json brightness();

} // namespace qvtc::display
