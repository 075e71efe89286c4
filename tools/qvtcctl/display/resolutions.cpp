#include "qvtcctl/display/resolutions.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

std::vector<std::string_view> names() {
    std::vector<std::string_view> all;
    for (const Resolution& each : resolutions) all.push_back(each.name);
    return all;
}

} // namespace

const Resolution& require_resolution(std::string_view name) {
    const auto* const found =
        std::find_if(resolutions.begin(), resolutions.end(),
                     [name](const Resolution& each) { return each.name == name; });
    if (found != resolutions.end()) return *found;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown resolution \"{}\"{}: give one of {}.", printable(name),
                              did_you_mean(name, names()), fmt::join(names(), ", ")));
}

std::string resolution_name(std::string_view index) {
    for (const Resolution& each : resolutions) {
        if (each.index == index) return std::string(each.name);
    }
    return fmt::format("auto (the stored index \"{}\" is not valid)", printable(index));
}

} // namespace qvtc::qvtcctl
