#include "qvtcctl/system/zones.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

namespace fs = std::filesystem;

constexpr const char* zone_directory = "/usr/share/zoneinfo/posix";
constexpr std::size_t suggestions = 3;

std::string_view city_of(std::string_view name) { return name.substr(name.rfind('/') + 1); }

/// How far a name is from what was typed; the same city in another region is near.
std::size_t distance(std::string_view wrong, std::string_view name) {
    const std::size_t whole = edit_distance(wrong, name);
    const std::size_t city = edit_distance(city_of(wrong), city_of(name));
    return std::min(whole, city * 2 + 1);
}

} // namespace

std::vector<std::string> known_zones() {
    std::vector<std::string> zones;
    std::error_code failed;
    // The regions there may be links to those of the other scale of time.
    constexpr auto through_links = fs::directory_options::follow_directory_symlink;
    for (fs::recursive_directory_iterator at(zone_directory, through_links, failed), end;
         !failed && at != end; at.increment(failed)) {
        if (at->is_directory()) continue;
        const std::string name = at->path().lexically_relative(zone_directory);
        if (name.find('/') != std::string::npos) zones.push_back(name);
    }
    std::sort(zones.begin(), zones.end());
    return zones;
}

std::vector<std::string> nearest_zones(std::string_view wrong,
                                       const std::vector<std::string>& known) {
    std::vector<std::string> names = known;
    std::stable_sort(names.begin(), names.end(), [&](const auto& left, const auto& right) {
        return distance(wrong, left) < distance(wrong, right);
    });
    const std::size_t far = std::max<std::size_t>(wrong.size() / 2, 3);
    const auto end = std::find_if(names.begin(), names.end(),
                                  [&](const auto& name) { return distance(wrong, name) > far; });
    names.erase(end, names.end());
    if (names.size() > suggestions) names.resize(suggestions);
    return names;
}

Zone require_zone(std::string_view name) {
    const std::vector<std::string> known = known_zones();
    if (std::binary_search(known.begin(), known.end(), name)) {
        const std::size_t slash = name.find('/');
        return {std::string(name.substr(0, slash)), std::string(name.substr(slash + 1))};
    }
    std::string message = fmt::format("unknown time zone \"{}\".", printable(name));
    const std::vector<std::string> nearest = nearest_zones(name, known);
    if (known.empty()) {
        message += fmt::format(" There is no time zone data in {}.", zone_directory);
    } else if (nearest.empty()) {
        message += " Give a region and a city, such as Europe/Vienna.";
    } else {
        message += fmt::format(" Did you mean one of: {}?", fmt::join(nearest, ", "));
    }
    throw Refusal(ExitCode::bad_usage, message);
}

} // namespace qvtc::qvtcctl
