#include "qvtcctl/clients/logon.hpp"

#include "qvtcctl/base/server_probe.hpp"
#include "qvtcctl/clients/rdp_security.hpp"
#include "qvtcctl/connections/server_address.hpp"

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

// The client has just got there, so what takes longer than this is not waited for.
constexpr auto longest_resolution = 2s;
constexpr auto longest_answer = 2s;

std::optional<Negotiation> ask(const ServerAddress& server) {
    const HostAddresses resolution = resolve(server.host, longest_resolution);
    for (const std::string& address : resolution.addresses) {
        ServerSocket socket(address, server.port, longest_answer);
        if (socket.answer() == PortAnswer::answered) return negotiate(socket, offered_by_client);
    }
    return std::nullopt;
}

} // namespace

Logon logon_of(const ConnectionType& type, const Record& record) {
    if (type.number != QVTC_TYPE_RDP || route_of(type, record) == Route::gateway) {
        return Logon::unknown;
    }
    const std::optional<ServerAddress> server = server_of(type, record);
    const std::optional<Negotiation> answer = server ? ask(*server) : std::nullopt;
    if (!answer) return Logon::unknown;
    return answer->chosen == nla ? Logon::before_session : Logon::in_session;
}

Logon logon_when(State state, const ConnectionType& type, const Record& record) {
    return state == State::connected ? logon_of(type, record) : Logon::unknown;
}

std::string_view words_of(State state, Logon logon) {
    if (state != State::connected || logon != Logon::in_session) return words_of(state);
    return "connected to the server; it asks for the logon itself";
}

void add_logon(Json& map, Logon logon) {
    if (logon == Logon::unknown) return;
    add(map, "logon", logon == Logon::in_session ? "in-session" : "before-session");
}

} // namespace qvtc::qvtcctl
