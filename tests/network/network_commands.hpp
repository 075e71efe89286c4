#pragma once

#include <string>
#include <vector>

/// The commands with which the network is looked at, as the tests of several files expect them.
namespace qvtc::test {

using Texts = std::vector<std::string>;

inline constexpr const char* running_line =
    "eth0: flags=4163<UP,BROADCAST,RUNNING,MULTICAST>  mtu 1500\n";

/// Whether the terminal is on the network: both wired ports, then the Wi-Fi hardware.
inline const Texts status_commands = {"capture 1024 ifconfig |grep eth0 ",
                                      "capture 1024 ifconfig |grep eth1 ",
                                      "capture 2048 ip addr |grep wlan0"};

inline std::string gateway_command(const std::string& device) {
    return "ip route  show |grep " + device + "|grep default |grep '[ ]'|awk '{print $3}'";
}

/// Two lists, one behind the other.
inline Texts operator+(Texts first, const Texts& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace qvtc::test
