#include "qvtcctl/clients/launchable.hpp"

#include "qvtcctl/base/refusal.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {

std::string launchable_types() {
    std::string names;
    for (const ConnectionType& type : connection_types) {
        if (!can_be_launched(type)) continue;
        names += fmt::format("{}{}", names.empty() ? "" : ", ", type.title);
    }
    return names;
}

void require_launchable(const ConnectionType& type) {
    if (can_be_launched(type)) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} connections can be started only by the terminal's front-end. "
                              "These can be started from here: {}.",
                              type.title, launchable_types()));
}

Json connection_head(unsigned id, const ConnectionType& type, const Record& record) {
    Json map = json_map();
    add_number(map, "id", id);
    add(map, "type", type.name);
    add(map, "name", record.name());
    return map;
}

std::string screen_remark(Sight window) {
    if (window != Sight::unknown) return "";
    return "  Display :0.0 did not respond. Check that the X server runs and that xwininfo is "
           "installed.\n";
}

} // namespace qvtc::qvtcctl
