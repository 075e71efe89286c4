#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/json.hpp"

/// The vocabulary of screen resolutions: a choice is stored as a short decimal
/// text, its index, and reaches the terminal's display script under a name.
namespace qvtc::display {

/// The numbers that an index stands for.
namespace resolution_number {
inline constexpr unsigned fallback = 0; ///< what every unknown index stands for
inline constexpr unsigned automatic = 10;
} // namespace resolution_number

struct Resolution {
    unsigned number;
    const char* choice; ///< what the user chooses; null for none
    const char* name;   ///< what the display script is told
};

// clang-format off
inline constexpr Resolution resolutions[] = {
    { 0, "800x600",   "auto"}, // Deliberate: the smallest choice is left to the script.
    { 1, "1024x768",  "1024x768"},
    { 2, "1280x720",  "1280x720"},
    { 3, "1440x900",  "1440x900"},
    { 4, "1600x1200", "1600x1200"},
    { 5, "1920x1080", "1920x1080"},
    { 6, "1280x1024", "1280x1024"},
    { 7, "1366x768",  "1366x768"},
    { 8, "1600x900",  "1600x900"},
    { 9, nullptr,     "1280x800"},
    {10, nullptr,     "auto"},
    // Deliberate: no index leads to these three.
    {11, nullptr,     "2560x1440"},
    {12, nullptr,     "1680x1050"},
    {13, nullptr,     "3840x2160"},
};
// clang-format on

/// 1 to 10 for exactly these texts, else 0.
unsigned number_of_index(std::string_view index);

/// What the display script is told for a number; "auto" for one that is unknown.
const char* name_of_number(unsigned number);

/// The index that a request asks for: a resolution, a text with "auto" in it, or
/// a parameter string with "res". Empty when it asks for none that there is.
std::string requested_index(const std::string& request);

/// {"list": [{"value": "auto"}, ...]}: what the user is offered.
Json offered_resolutions();

/// The resolution of the first connected output, as WIDTHxHEIGHT; empty when no
/// output tells one. Nothing, with the reason in the log, when the X server
/// could not be asked.
std::optional<std::string> current_resolution();

} // namespace qvtc::display
