#pragma once

#include <array>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// A resolution and the index under which the library knows it.
struct Resolution {
    std::string_view name;
    std::string_view index;
};

// clang-format off
inline constexpr std::array<Resolution, 11> resolutions{{
    {"auto",      "10"}, {"800x600",  "0"}, {"1024x768", "1"}, {"1280x720", "2"},
    {"1280x800",  "9"},  {"1280x1024", "6"}, {"1366x768", "7"}, {"1440x900", "3"},
    {"1600x900",  "8"},  {"1600x1200", "4"}, {"1920x1080", "5"},
}};
// clang-format on

/// Refuses what is none.
const Resolution& require_resolution(std::string_view name);

/// The name of an index; for one that stands for none, words that show it.
std::string resolution_name(std::string_view index);

} // namespace qvtc::qvtcctl
