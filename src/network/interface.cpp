#include "network/interface.hpp"

#include <arpa/inet.h>
#include <array>
#include <cstdio>
#include <cstring>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "core/descriptor.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "network/devices.hpp"
#include "network/name_servers.hpp"
#include "network/wifi_hardware.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::network {

namespace {

constexpr std::size_t conf_line_limit = 511;
constexpr std::size_t shortest_gateway = 6;

Descriptor datagram_socket() { return Descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)); }

/// What the kernel answers to a request for an address of the interface.
std::optional<std::string> asked_address(const Descriptor& socket, unsigned long request,
                                         const std::string& device) {
    ifreq answer{};
    if (device.size() >= sizeof answer.ifr_name) return std::nullopt; // no interface has it
    copy_out(answer.ifr_name, sizeof answer.ifr_name, device);
    if (ioctl(socket.get(), request, &answer) != 0) return std::nullopt;
    sockaddr_in address{};
    std::memcpy(&address, &answer.ifr_addr, sizeof address);
    std::array<char, INET_ADDRSTRLEN> text{};
    inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
    return text.data();
}

std::string right_trimmed(std::string text) {
    const std::size_t last = text.find_last_not_of(" \t\n\v\f\r");
    text.resize(last == std::string::npos ? 0 : last + 1);
    return text;
}

} // namespace

bool is_running(const std::string& device) {
    const std::string lines =
        os().capture(textf("ifconfig |grep %s ", shell::grep_pattern(device).c_str()), 1024);
    return contains(lines, "UP,BROADCAST,RUNNING,MULTICAST");
}

bool any_running() {
    const bool main = is_running(main_port);
    const bool extra = is_running(extra_port);
    const bool wireless = wireless_present() &&
                          contains(store::setting(store::keys::wifi_switch), "on") &&
                          is_running(wireless_link);
    return main || extra || wireless;
}

std::string interface_file(const std::string& name) {
    return std::string(paths::network_scripts) + "/ifcfg-" + replace_all(name, '/', '-');
}

std::optional<std::string> address_of(const std::string& device) {
    const Descriptor socket = datagram_socket();
    if (!socket.is_open()) return std::nullopt;
    return asked_address(socket, SIOCGIFADDR, device);
}

MaskRead read_mask(const std::string& device, std::string& mask) {
    const Descriptor socket = datagram_socket();
    if (!socket.is_open()) {
        std::printf("%s open socket failed net_interface=%s\n", "getmask", device.c_str());
        return MaskRead::no_socket;
    }
    const auto answer = asked_address(socket, SIOCGIFNETMASK, device);
    if (!answer) {
        std::printf("%s ioctl failed net_interface=%s\n", "getmask", device.c_str());
        return MaskRead::refused;
    }
    mask = *answer;
    return MaskRead::done;
}

ConfRead read_conf(const std::string& device, std::string& conf) {
    conf = "0";
    const std::string file = interface_file(device);
    if (!os().exists(file.c_str())) return ConfRead::done;
    const auto lines = os().lines(textf("cat %s| grep \"BOOTPROTO\"", shell::word(file).c_str()));
    if (!lines) {
        log(Level::error, "@getconf popen error");
        return ConfRead::not_started;
    }
    if (!lines->empty() && contains(lines->front().substr(0, conf_line_limit), "static"))
        conf = "1";
    return ConfRead::done;
}

std::optional<std::string> gateway_of(const std::string& device) {
    if (!any_running()) return std::nullopt;
    // Two blanks behind "route", as terminals in the field have it.
    const std::string routes =
        os().capture(textf("ip route  show |grep %s|grep default |grep '[ ]'|awk '{print $3}'",
                           shell::grep_pattern(device).c_str()),
                     128);
    return routes.size() < shortest_gateway ? "" : right_trimmed(routes);
}

void read_net_conf(const std::string& device, NetConf& record) {
    if (const auto address = address_of(device)) record.ip = *address;
    read_mask(device, record.mask);
    read_conf(device, record.conf);
    const std::string gateway = gateway_of(device).value_or("");
    if (!gateway.empty()) record.gateway = gateway.substr(0, field_limit);
    if (const auto servers = name_servers()) {
        record.dns1 = servers->first.substr(0, field_limit);
        record.dns2 = servers->second.substr(0, field_limit);
    }
}

} // namespace qvtc::network
