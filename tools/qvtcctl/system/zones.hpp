#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// A time zone in the two halves in which the terminal keeps it: "Asia/Tokyo".
struct Zone {
    std::string region;
    std::string city;

    std::string name() const { return region + "/" + city; }
};

/// The zones that this terminal has, sorted; empty where it has no zone data.
std::vector<std::string> known_zones();

/// The names among `known` that come nearest to a wrong one, the nearest first, at most three:
/// those with the same city, then those that differ by little.
std::vector<std::string> nearest_zones(std::string_view wrong,
                                       const std::vector<std::string>& known);

/// The zone of that name. Refuses one that this terminal does not have, naming the nearest.
Zone require_zone(std::string_view name);

} // namespace qvtc::qvtcctl
