#pragma once

#include "qvtcctl/network/addresses.hpp"
#include "qvtcctl/verb/quiet.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

enum class Port { main, extra, wireless };

/// All of them, in the order in which they are shown.
inline constexpr std::array ports{Port::main, Port::extra, Port::wireless};

std::string_view name_of(Port port); ///< "eth0"

/// The port of that name. Refuses others; wlan0 only where it is among those to choose from.
Port require_port(const std::string& name, bool with_wireless);

/// What a port has in use. Empty for what there is none of.
struct PortState {
    bool is_static = false;
    std::string address;
    std::string mask;
    std::string gateway;
    std::string dns1;
    std::string dns2;
};

/// A wireless network in range.
struct NetworkInRange {
    std::string name;
    bool in_use = false;
    std::string encryption;
    unsigned signal = 0; ///< 0 to strongest_signal
};
inline constexpr unsigned strongest_signal = 6;

/// The terminal's network, through the library. A change is read back where it can be, and one that
/// failed is refused with ExitCode::not_done.
class Network {
  public:
    /// Refuses (ExitCode::not_possible) to work without root's rights or without /home/root.
    explicit Network(Chatter chatter);

    bool is_online() const;

    /// Nothing when the port is not there.
    std::optional<PortState> state(Port port) const;

    /// Refuses (ExitCode::not_possible) a port that is not there.
    PortState require_state(Port port) const;

    /// Waits until the port has been restarted, and gives what it has then.
    PortState set_wired(Port port, Mode mode, const WantedAddresses& wanted) const;
    PortState set_wireless(const std::string& network, Mode mode,
                           const WantedAddresses& wanted) const;

    /// Whether a NetworkManager that runs here manages the port. It does not read what the library
    /// writes, and sets the port up as it sees fit, some time later.
    static bool is_managed_elsewhere(Port port);

    bool has_wifi() const;
    bool wifi_is_on() const;
    void switch_wifi(bool on) const;

    /// Refuses when there is no Wi-Fi, or it is switched off.
    void require_wifi() const;
    std::vector<NetworkInRange> scan() const;

    /// Begins to join; what has come of it shows in a later scan.
    void join(const std::string& network, Encryption encryption, const std::string& user,
              const std::string& password) const;

    /// Gives the port, which then carries a default route.
    PortState set_default_route(Port port) const;

  private:
    Chatter chatter_;
};

} // namespace qvtc::qvtcctl
