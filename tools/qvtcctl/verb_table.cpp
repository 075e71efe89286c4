#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    static const std::array<Group, 4> table{{
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"", "", volume_verbs()},
        {"sound", "The sound cards", sound_verbs()},
    }};
    return table;
}

} // namespace qvtc::qvtcctl
