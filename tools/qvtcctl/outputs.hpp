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

/// The connected ones among what xrandr prints.
std::vector<Output> connected_outputs(std::string_view listing);

/// Those of display :0.0; nothing when the X server could not be asked.
std::optional<std::vector<Output>> connected_outputs();

} // namespace qvtc::qvtcctl
