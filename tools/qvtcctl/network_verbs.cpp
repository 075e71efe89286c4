#include "qvtcctl/network_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 7> table{{
    {"show", "Show the ports, Wi-Fi and their addresses",
     "Shows what the wired ports eth0 and eth1 and the wireless link wlan0 have in use, whether "
     "the terminal is on a network, and whether Wi-Fi is on.",
     "qvtcctl network show\n"
     "qvtcctl network show --json",
     define_network_show},
    {"set", "Set the addresses of a wired port",
     "Sets up a wired port and restarts it: \"dhcp\" lets the network's server decide, \"static\" "
     "needs an address, its mask and the gateway, and \"dns\" sets only the name servers. "
     "Everything is checked before anything is changed, and read back afterwards. Whoever is "
     "logged on over this port loses the connection. A NetworkManager that manages the port may "
     "replace the addresses later; a note says so.",
     "qvtcctl network set eth0 dhcp\n"
     "qvtcctl network set eth0 static --address 192.168.1.20 --mask 255.255.255.0 --gateway "
     "192.168.1.1 --dns1 192.168.1.1\n"
     "qvtcctl network set eth0 dns --dns1 9.9.9.9 --dns2 1.1.1.1",
     define_network_set},
    {"wifi", "Show the Wi-Fi switch, or switch Wi-Fi on or off",
     "Shows whether there is Wi-Fi hardware and whether Wi-Fi is on, or switches it.",
     "qvtcctl network wifi\n"
     "qvtcctl network wifi on",
     define_network_wifi},
    {"scan", "List the wireless networks in range",
     "Lists the wireless networks in range with their signal and encryption, and marks the one in "
     "use with \"*\". Hidden networks are not listed. Wi-Fi must be switched on.",
     "qvtcctl network scan\n"
     "qvtcctl network scan --json",
     define_network_scan},
    {"join", "Join a wireless network",
     "Begins to join a wireless network, in the background; \"qvtcctl network scan\" marks it "
     "once it is in use. All networks that were joined before are forgotten, and the link gets "
     "its address by DHCP. The password is asked for, or read from standard input; an open "
     "network needs none.",
     "qvtcctl network join Office\n"
     "qvtcctl network join \"Guest WiFi\" --open\n"
     "qvtcctl network join Corp --enterprise --user anna --password-stdin < password",
     define_network_join},
    {"wireless", "Set the addresses of the wireless link",
     "Sets up how the wireless link gets its address in the network of that name, and restarts "
     "it: \"dhcp\" lets the network's server decide, \"static\" needs an address, its mask and "
     "the gateway. The network must have been joined before.",
     "qvtcctl network wireless Office dhcp\n"
     "qvtcctl network wireless \"Guest WiFi\" static --address 10.0.0.20 --mask 255.255.255.0 "
     "--gateway 10.0.0.1",
     define_network_wireless},
    {"route", "Show the default routes, or choose their port",
     "Shows which ports carry a default route, or adds one through a port, with the gateway that "
     "the routing table names for it. Routes through other ports stay.",
     "qvtcctl network route\n"
     "qvtcctl network route eth1",
     define_network_route},
}};
// clang-format on

} // namespace

std::span<const Verb> network_verbs() { return table; }

} // namespace qvtc::qvtcctl
