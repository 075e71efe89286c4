#include "qvtcctl/power_verbs.hpp"
#include "qvtcctl/terminal_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr auto table = std::to_array<Verb>({
    {"idle", "Show or set when idle screens are switched off",
     "Shows after how many minutes without input the screens are switched off, or sets it. Without "
     "--minutes the time that is stored stays.",
     "qvtcctl power idle\n"
     "qvtcctl power idle on --minutes 10\n"
     "qvtcctl power idle off",
     define_power_idle},
    {"reboot", "Restart the terminal",
     "Restarts the terminal, after asking you.",
     "qvtcctl power reboot\n"
     "qvtcctl power reboot --yes",
     define_reboot, Settings::not_needed},
    {"shutdown", "Switch the terminal off",
     "Switches the terminal off, after asking you.",
     "qvtcctl power shutdown\n"
     "qvtcctl power shutdown --yes",
     define_shutdown, Settings::not_needed},
    {"network-repair", "Request new addresses and restart the network",
     "Writes a plain configuration of the wireless network, removes the static gateway, requests "
     "addresses for all ports by DHCP and restarts the network. It asks you first, and shows the "
     "addresses that the ports have afterwards.",
     "qvtcctl power network-repair",
     define_network_repair, Settings::not_needed},
});
// clang-format on

} // namespace

std::span<const Verb> power_verbs() { return table; }

} // namespace qvtc::qvtcctl
