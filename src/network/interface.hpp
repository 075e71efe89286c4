#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// What can be read of a network interface, wired or wireless.
namespace qvtc::network {

/// Most bytes of one field of a configuration.
inline constexpr std::size_t field_limit = 63;

/// The IPv4 configuration of an interface.
struct NetConf {
    std::string conf = "0"; ///< "1" static, "0" DHCP
    std::string ip = "0.0.0.0";
    std::string gateway = "0.0.0.0";
    std::string mask = "0.0.0.0";
    std::string dns1 = "0.0.0.0";
    std::string dns2 = "0.0.0.0";
};

/// Whether the interface is up and running.
bool is_running(const std::string& device);

/// Whether any interface of the terminal is: eth0, eth1, or wlan0 when Wi-Fi is
/// there and switched on.
bool any_running();

/// The file of the interface, or of the wireless profile, of that name. A slash
/// becomes "-", as in NetworkManager's own names of profiles: a network may call
/// itself anything, and must not reach a file of another directory.
std::string interface_file(const std::string& name);

/// The address in use, a dotted quad; nothing when there is none.
std::optional<std::string> address_of(const std::string& device);

enum class MaskRead { done, no_socket, refused };
/// Reads the mask in use into `mask`; says on standard output why it cannot.
MaskRead read_mask(const std::string& device, std::string& mask);

enum class ConfRead { done, not_started };
/// "1" when the interface file asks for a static address, else "0".
ConfRead read_conf(const std::string& device, std::string& conf);

/// The gateway of the default route through the interface. Nothing when the
/// terminal is on no network; empty when there is no such route.
std::optional<std::string> gateway_of(const std::string& device);

/// Fills what can be read and leaves the rest.
void read_net_conf(const std::string& device, NetConf& record);

} // namespace qvtc::network
