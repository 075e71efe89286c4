#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/network/network.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// {"port", "present", "mode", "address", "mask", "gateway", "dns1", "dns2"}; without the last six
/// for a port that is not there.
Json port_json(Port port, const std::optional<PortState>& state);

/// {"present", "on"}
Json wifi_json(bool present, bool on);

/// What to know of a port that a NetworkManager manages too.
std::string note_on_manager(Port port);

/// As many bars as the signal has levels: "####--".
std::string signal_bars(unsigned signal);

/// One line a network; there may be none.
std::string scan_text(const std::vector<NetworkInRange>& networks);

/// {"networks": [{"name", "inUse", "signal", "encryption"}, ...]}
Json scan_json(const std::vector<NetworkInRange>& networks);

/// "eth0 has 192.168.1.20, mask 255.255.255.0, gateway 192.168.1.1."
std::string port_sentence(Port port, const PortState& state);

} // namespace qvtc::qvtcctl
