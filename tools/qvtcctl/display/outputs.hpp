#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// An output with a screen connected, and where on the desktop its picture lies.
struct Output {
    std::string name;
    std::string place; ///< WIDTHxHEIGHT+X+Y; empty when it is switched off

    bool operator==(const Output&) const = default;
};

/// Where the second of two pictures lies.
enum class Arrangement { same_place, beside, below };

/// The names of those whose pictures do not lie so to the first one's: the terminal arranges two
/// screens and leaves others alone.
std::vector<std::string> outside(Arrangement arrangement, const std::vector<Output>& outputs);

/// The connected ones among what xrandr prints.
std::vector<Output> connected_outputs(std::string_view listing);

/// Those of display :0.0; nothing when the X server did not respond.
std::optional<std::vector<Output>> connected_outputs();

} // namespace qvtc::qvtcctl
