#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    static const std::array<Group, 5> table{{
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"", "", terminal_verbs()},
        {"power", "Restarting, switching off, repair", power_verbs()},
        {"update", "The software update", update_verbs()},
    static const std::array<Group, 4> table{{
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"", "", volume_verbs()},
        {"sound", "The sound cards", sound_verbs()},
    }};
    return table;
}

} // namespace qvtc::qvtcctl
