#include "qvtcctl/power_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 1> table{{
    {"idle", "Show or set when idle screens are switched off",
     "Shows after how many minutes without input the screens are switched off, or sets it. Without "
     "--minutes the time that is stored stays.",
     "qvtcctl power idle\n"
     "qvtcctl power idle on --minutes 10\n"
     "qvtcctl power idle off",
     define_power_idle},
}};
// clang-format on

} // namespace

std::span<const Verb> power_verbs() { return table; }

} // namespace qvtc::qvtcctl
