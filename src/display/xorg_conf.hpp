#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The lines of the X server's configuration file, without their newlines.
namespace qvtc::display {

using Lines = std::vector<std::string>;

/// The minimal file, which leaves all but the server's flags to the server.
Lines minimal_configuration();

/// What the complete file shrinks to for cloned screens of automatic resolution.
Lines flags_only_configuration();

/// The two outputs that the monitors of the complete file stand for.
struct Outputs {
    const char* first;
    const char* second;
};

/// Facts that only some processors' outputs depend on.
enum class OutputTest { none, is_notebook, dp1_is_connected, hdmi1_is_not_connected };

/// The outputs of a machine with this processor; asks for a fact only when
/// they depend on it.
Outputs outputs_of(std::string_view processor, const std::function<bool(OutputTest)>& holds);

/// The graphics driver for the VGA lines that `lspci` prints.
const char* driver_of(std::string_view graphics_cards);

/// The mode that the complete file asks for, one of its own modelines, by the
/// number of a resolution other than the automatic one. Not the resolution that
/// the display script is told.
const char* static_mode_of(unsigned resolution_number);

/// What the complete file is made of.
struct StaticFacts {
    std::string mode; ///< its name; empty for a file without a Modes line
    const char* driver;
    bool dual = false; ///< two screens side by side; otherwise cloned ones
    Outputs outputs;   ///< of two screens
};

/// The complete file: devices, monitors with their modelines, screen and layout.
Lines static_configuration(const StaticFacts& facts);

} // namespace qvtc::display
