#include "display/pairs.hpp"

#include <algorithm>

#include "core/params.hpp"

namespace qvtc::display {

namespace {

/// What stands behind "name" in each pair that begins so, until `accepts` takes one.
template <typename Accepts>
bool any_rest_of(std::string_view params, std::string_view name, Accepts accepts) {
    while (!params.empty()) {
        const std::string_view pair = params.substr(0, params.find('&'));
        if (pair.starts_with(name) && accepts(pair.substr(name.size()))) return true;
        params.remove_prefix(std::min(pair.size() + 1, params.size()));
    }
    return false;
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
    const auto is_empty = [](std::string_view rest) {
        return rest.starts_with('=') && rest.find_first_not_of('=') == std::string_view::npos;
    };
    return any_rest_of(params, name, is_empty) ? std::optional<std::string>("") : std::nullopt;
}

bool has_pair(const std::string& params, std::string_view name) {
    return any_rest_of(params, name, [](std::string_view rest) { return rest.starts_with('='); });
}

} // namespace qvtc::display
