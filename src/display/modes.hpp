#pragma once

#include <string>

#include "core/json.hpp"

/// What several screens show and in which order, and what is connected.
namespace qvtc::display {

/// Cloned screens for the value "clone" of "displayMode", an extended desktop
/// for any other, split vertically if it contains "extendverticalscreen". Marks
/// it for the display script, gives the window manager the configuration that
/// goes with it, and ends in write_configuration() with the applied resolution.
/// Without the key it does nothing. Always 1.
int set_mode(const std::string& params);

/// As set_mode(), but leaves a virtual machine as it is.
void set_mode_of_real_machine(const std::string& params);

/// {"displayMode": "clone", "extendverticalscreen" or "extend"}
Json mode();

/// {"splitVerticallyMode": "hdmi", "vga" or ""}
Json vertical_split();

/// Puts the screens in reverse order for a "displayOrder" that contains
/// "Reverse", in the usual one for any other; runs the display script.
void set_order(const std::string& params);

/// {"displayOrder": "Reverse" or "Positive"}
Json order();

/// Whether the X server knows both a VGA and an HDMI output.
bool has_vga_and_hdmi();

/// The same question with a pattern that no output matches.
bool has_display_interfaces();

/// How many outputs have a screen connected: 0, 1, or 2 for all that is more.
int connected_screens();

} // namespace qvtc::display
