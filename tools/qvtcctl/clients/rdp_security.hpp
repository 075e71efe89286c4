#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

class ServerSocket;

/// The security protocols of RDP, as the bits with which client and server negotiate.
enum RdpProtocols : std::uint32_t {
    old_rdp = 0, ///< RDP's own encryption; what is left when nothing else is asked for
    tls = 1,
    nla = 2, ///< network-level authentication: the logon comes before the session
};

/// What the RDP client offers when it is free to choose.
inline constexpr std::uint32_t offered_by_client = tls | nla;

/// The 19 bytes that begin a connection and ask for these protocols. They name no user.
std::string negotiation_request(std::uint32_t protocols);

/// A server's answer to them: the protocol that it has chosen, or its number for why it has none.
struct Negotiation {
    std::optional<std::uint32_t> chosen;
    std::uint32_t refusal = 0;

    bool operator==(const Negotiation&) const = default;
};

/// Nothing for bytes that are no such answer.
std::optional<Negotiation> negotiation_in(std::string_view bytes);

/// Asks a server that has just been connected to.
std::optional<Negotiation> negotiate(ServerSocket& server, std::uint32_t protocols);

/// What a server says about its security.
struct RdpSecurity {
    enum class Answer {
        silent,  ///< not a word in time
        strange, ///< it hung up, or speaks no RDP
        refused, ///< it takes nothing that the client offers
        given
    };
    Answer answer = Answer::silent;
    std::optional<std::uint32_t> chosen; ///< what the client will get
    bool takes_old_rdp = false;
    bool takes_tls = false;
    bool takes_nla = false;

    /// The session begins without a logon: the server asks for it in a window of its own, so a
    /// wrong password looks like a connection.
    bool asks_for_logon() const { return chosen && *chosen != nla; }

    bool operator==(const RdpSecurity&) const = default;
};

/// Asks the server at an address once for each protocol, and waits so long for each answer.
RdpSecurity rdp_security_of(const std::string& address, unsigned port,
                            std::chrono::milliseconds longest);

} // namespace qvtc::qvtcctl
