#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    static const std::array<Group, 5> table{{
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"display", "The screens", display_verbs()},
        {"power", "Power saving", power_verbs()},
        {"", "", start_verbs()},
    }};
    return table;
}

} // namespace qvtc::qvtcctl
