#pragma once

#include "qvtcctl/base/finding.hpp"
#include "qvtcctl/base/server_probe.hpp"
#include "qvtcctl/clients/rdp_security.hpp"
#include "qvtcctl/connections/server_address.hpp"
#include "qvtcctl/doctor/certificate.hpp"

#include <ctime>
#include <optional>

namespace qvtc::qvtcctl {

/// What was found of a server, or a gateway.
struct ServerFacts {
    ServerAddress address;
    HostAddresses resolution;
    std::optional<PortAnswer> answer;       ///< nothing when it was not asked
    std::optional<RdpSecurity> security;    ///< nothing when it is not asked for RDP
    std::optional<Certificate> certificate; ///< nothing when there was none to be had
    bool tls_was_silent = false;            ///< nothing came back to the question for it in time
};

/// Whether the client would get to see a certificate of the server's.
bool shows_certificate(const ServerFacts& facts);

/// What a server is looked at for.
struct ServerRole {
    const ConnectionType& type;
    unsigned id = 0;
    std::string_view field; ///< the one that holds its address
    std::time_t now = 0;
};

/// Its name, its port, its security and its certificate, as far as one leads to the next.
Findings findings_on_server(const ServerRole& role, const ServerFacts& facts);

} // namespace qvtc::qvtcctl
