#pragma once

#include <string_view>

namespace qvtc::qvtcctl {

enum class Sight {
    absent,
    seen,
    unknown ///< the screen could not be asked
};

/// Whether a line of the window tree, as xwininfo prints it, holds the pattern.
bool names_window(std::string_view tree, std::string_view pattern);

/// Looks for the pattern among the windows of display :0.0. Waits at most three seconds.
Sight look_for_window(std::string_view pattern);

} // namespace qvtc::qvtcctl
