#include "qvtcctl/connections/types.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

std::vector<std::string_view> type_names() {
    std::vector<std::string_view> names;
    for (const ConnectionType& type : connection_types) names.push_back(type.name);
    return names;
}

} // namespace

const ConnectionType* find_type(std::string_view name_or_number) {
    const std::optional<unsigned> number = parse_number(name_or_number);
    const auto found = std::find_if(
        connection_types.begin(), connection_types.end(), [&](const ConnectionType& type) {
            return number ? type.number == *number : edit_distance(type.name, name_or_number) == 0;
        });
    return found == connection_types.end() ? nullptr : &*found;
}

const ConnectionType* type_of_id(unsigned id) {
    const auto found =
        std::find_if(connection_types.begin(), connection_types.end(),
                     [&](const auto& type) { return first_id(type) <= id && id <= last_id(type); });
    return found == connection_types.end() ? nullptr : &*found;
}

const ConnectionType& require_type(std::string_view name_or_number) {
    if (const ConnectionType* type = find_type(name_or_number)) return *type;
    const std::vector<std::string_view> names = type_names();
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("\"{}\" is not a connection type{}: give one of {}.",
                              printable(name_or_number), did_you_mean(name_or_number, names),
                              fmt::join(names, ", ")));
}

const ConnectionType& require_type_of_id(unsigned id) {
    if (const ConnectionType* type = type_of_id(id)) return *type;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} is not a connection id: no type has it. \"qvtcctl connection "
                              "types\" shows the ids of each type.",
                              id));
}

unsigned require_id(std::string_view text) {
    const std::optional<unsigned> id = parse_number(text);
    if (!id) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("\"{}\" is not a connection id: give a number, as \"qvtcctl "
                                  "connection list\" shows it.",
                                  printable(text)));
    }
    require_type_of_id(*id);
    return *id;
}

} // namespace qvtc::qvtcctl
