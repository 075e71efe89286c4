#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    static const std::array<Group, 3> table{{
        {"connection", "The stored connections", connection_verbs()},
        {"network", "The wired and wireless network", network_verbs()},
        {"", "", client_verbs()},
    }};
    return table;
}

} // namespace qvtc::qvtcctl
