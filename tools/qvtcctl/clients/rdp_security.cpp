#include "qvtcctl/clients/rdp_security.hpp"

#include "qvtcctl/base/server_socket.hpp"

#include <array>

namespace qvtc::qvtcctl {
namespace {

// A TPKT header of four bytes, with the length of the whole; a connection confirm of X.224, of
// seven; then, from servers that negotiate, an answer of eight, whose number is little-endian.
constexpr std::size_t header_size = 4;
constexpr std::size_t without_negotiation = 11;
constexpr std::size_t with_negotiation = 19;
constexpr std::size_t longest_answer = 512;
constexpr char tpkt_version = 3;
constexpr unsigned char connection_confirm = 0xd0;
constexpr char chosen_kind = 2;
constexpr char refusal_kind = 3;

unsigned byte_at(std::string_view bytes, std::size_t place) {
    return static_cast<unsigned char>(bytes[place]);
}

std::size_t length_in(std::string_view header) {
    return byte_at(header, 2) * 256 + byte_at(header, 3);
}

std::uint32_t number_at(std::string_view bytes, std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) number = number * 256 + byte_at(bytes, place + i - 1);
    return number;
}

} // namespace

std::string negotiation_request(std::uint32_t protocols) {
    std::string request("\x03\x00\x00\x13\x0e\xe0\x00\x00\x00\x00\x00\x01\x00\x08\x00", 15);
    for (unsigned shift = 0; shift < 32; shift += 8) {
        request += static_cast<char>(protocols >> shift & 0xff);
    }
    return request;
}

std::optional<Negotiation> negotiation_in(std::string_view bytes) {
    if (bytes.size() < without_negotiation || bytes[0] != tpkt_version) return std::nullopt;
    if (length_in(bytes) != bytes.size()) return std::nullopt;
    if ((byte_at(bytes, 5) & 0xf0) != connection_confirm) return std::nullopt;
    if (bytes.size() < with_negotiation) return Negotiation{old_rdp, 0}; // from before all that
    const std::uint32_t number = number_at(bytes, with_negotiation - 4);
    switch (bytes[without_negotiation]) {
    case chosen_kind:
        // No other was asked for.
        if (number != old_rdp && number != tls && number != nla) return std::nullopt;
        return Negotiation{number, 0};
    case refusal_kind:
        return Negotiation{std::nullopt, number};
    default:
        return std::nullopt;
    }
}

std::optional<Negotiation> negotiate(ServerSocket& server, std::uint32_t protocols) {
    if (!server.send(negotiation_request(protocols))) return std::nullopt;
    std::string bytes = server.receive_exactly(header_size);
    if (bytes.size() < header_size || length_in(bytes) > longest_answer) return std::nullopt;
    if (length_in(bytes) > header_size) {
        bytes += server.receive_exactly(length_in(bytes) - header_size);
    }
    return negotiation_in(bytes);
}

RdpSecurity rdp_security_of(const std::string& address, unsigned port,
                            std::chrono::milliseconds longest) {
    using enum RdpSecurity::Answer;
    RdpSecurity security;
    const auto ask = [&](std::uint32_t protocols) {
        ServerSocket server(address, port, longest);
        const std::optional<Negotiation> answer = negotiate(server, protocols);
        if (!answer && protocols == offered_by_client) {
            security.answer = server.timed_out() ? silent : strange;
        }
        return answer;
    };
    const std::optional<Negotiation> best = ask(offered_by_client);
    if (!best) return security;
    const std::optional<Negotiation> only_tls = ask(tls);
    const std::optional<Negotiation> only_old = ask(old_rdp);
    security.takes_nla = best->chosen == nla;
    security.takes_tls = best->chosen == tls || (only_tls && only_tls->chosen == tls);
    security.takes_old_rdp = best->chosen == old_rdp || (only_old && only_old->chosen == old_rdp);
    // Refused what it offers first, the client tries the old way.
    security.chosen = best->chosen;
    if (!security.chosen && security.takes_old_rdp) security.chosen = old_rdp;
    security.answer = security.chosen ? given : refused;
    return security;
}

} // namespace qvtc::qvtcctl
