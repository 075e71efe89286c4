#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    static const auto table = std::to_array<Group>({
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"display", "The screens", display_verbs()},
        {"network", "The wired and wireless network", network_verbs()},
        {"", "", volume_verbs()},
        {"sound", "The sound cards", sound_verbs()},
        {"power", "Power saving, restarting, switching off, repair", power_verbs()},
        {"", "", terminal_verbs()},
        {"", "", device_verbs()},
        {"", "", start_verbs()},
        {"update", "The software update", update_verbs()},
    });
    return table;
}

} // namespace qvtc::qvtcctl
