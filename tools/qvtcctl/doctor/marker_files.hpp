#pragma once

#include "qvtcctl/connections/fields.hpp"

#include <array>
#include <string_view>

namespace qvtc::qvtcctl {

/// A file whose presence on the terminal changes what a connection does.
struct MarkerFile {
    TypeSet types;
    std::string_view path;
    std::string_view effect;       ///< a sentence
    std::string_view contradicts;  ///< a switch of the record that has no effect then, or ""
    std::string_view contradicts2; ///< another one
};

// clang-format off
inline constexpr auto marker_files = [] {
    using namespace field_sets;
    return std::to_array<MarkerFile>({
        {rdp,           "/home/root/usbdenied",        "USB devices and drives of the terminal stay here.", "usbRedirection", "localStorage"},
        {spice,         "/home/root/usbdenied",        "USB devices of the terminal stay here.", "useRedirect", ""},
        {rdp | horizon, "/etc/X11/clone",              "The screens are mirrored, so monitorSelect has no effect.", "", ""},
        {rdp,           "/etc/X11/vga_left_of_hdmi",   "The VGA screen is left of the HDMI screen.", "", ""},
        {rdp,           "/home/root/n5095_notebook",   "The terminal is a notebook: a choice of the VGA screen is taken for the other one.", "", ""},
        {rdp,           "/home/root/j4105_notebook",   "The terminal is a notebook: a choice of the VGA screen is taken for the other one.", "", ""},
        {spice,         "/home/root/remote-viewer",    "The library reports every SPICE connection as connected, whatever the client's log says.", "", ""},
    });
}();
// clang-format on

} // namespace qvtc::qvtcctl
