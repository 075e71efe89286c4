#pragma once

#include "qvtcctl/connections/record.hpp"

#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// Where a client will go.
struct ServerAddress {
    std::string host;
    unsigned port = 0; ///< 0: not known
    bool tls = false;  ///< encrypted from the first byte, with a certificate of the server's

    bool operator==(const ServerAddress&) const = default;
};

/// The server of a connection, read as its client reads the record, with the client's own port
/// where the record has none. Nothing when the record names no server, as a file's address does.
std::optional<ServerAddress> server_of(const ConnectionType& type, const Record& record);

/// The gateway that an RDP client goes through; nothing when it goes through none.
std::optional<ServerAddress> gateway_of(const ConnectionType& type, const Record& record);

/// How a client reaches its server.
enum class Route { direct, gateway };
Route route_of(const ConnectionType& type, const Record& record);

} // namespace qvtc::qvtcctl
