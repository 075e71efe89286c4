#include "display/pairs.hpp"

#include <algorithm>

#include "core/params.hpp"

namespace qvtc::display {

namespace {

bool names(std::string_view pair, std::string_view name) {
    return pair.starts_with(name) && pair.substr(name.size()).starts_with('=');
}

} // namespace

std::optional<std::string> value_of(const std::string& params, std::string_view name) {
    ParamTable pairs;
    pairs.parse(params);
    const char* const value = pairs.find(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> value_or_empty_of(const std::string& params, std::string_view name) {
    if (auto value = value_of(params, name)) return value;
    for (std::string_view rest = params; !rest.empty();) {
        const auto end = std::min(rest.find('&'), rest.size());
        if (names(rest.substr(0, end), name)) return "";
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::nullopt;
}

} // namespace qvtc::display
