#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/clients/outcome.hpp"
#include "qvtcctl/connections/record.hpp"

#include <string_view>

namespace qvtc::qvtcctl {

/// When the user of a connection is asked for the logon.
enum class Logon {
    unknown,        ///< not an RDP server, or one that cannot be asked from here
    before_session, ///< network-level authentication: a session means that the logon succeeded
    in_session ///< the server asks in the session's window: a session means nothing of the kind
};

/// Asks the server which security it chooses when the client offers all that it can, without a user
/// name or a password. The client's log does not tell.
Logon logon_of(const ConnectionType& type, const Record& record);

/// The same, asked for only where the connection is there.
Logon logon_when(State state, const ConnectionType& type, const Record& record);

/// How a person reads the state.
std::string_view words_of(State state, Logon logon);

/// Adds the member "logon" for a program, where it is known.
void add_logon(Json& map, Logon logon);

} // namespace qvtc::qvtcctl
