#pragma once

#include "qvtcctl/base/server_socket.hpp"

#include <chrono>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// What became of a name.
struct HostAddresses {
    std::vector<std::string> addresses; ///< as numbers; empty when the name is not known
    bool was_name = false;              ///< false: it is an address itself
    bool timed_out = false;             ///< no name server has answered
};

/// Asks the system for the addresses of a host.
HostAddresses resolve(const std::string& host, std::chrono::milliseconds longest);

/// Opens a connection and closes it again.
PortAnswer try_port(const std::string& address, unsigned port, std::chrono::milliseconds longest);

} // namespace qvtc::qvtcctl
