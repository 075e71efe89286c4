#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace qvtc::qvtcctl {

class ServerSocket;

/// What is known of a server's certificate. All of it comes from the certificate itself and from
/// its verification, never from a text that a server could have written.
struct Certificate {
    std::string subject;
    std::time_t begins = 0;
    std::time_t expires = 0;
    int fault = 0;          ///< OpenSSL's number of what is wrong; 0: nothing
    std::string fault_text; ///< and its words for that

    bool operator==(const Certificate&) const = default;
};

/// Sets TLS up with a server that has been connected to, and verifies its certificate against the
/// host's name or address and the authorities that the terminal trusts. Nothing when the server
/// shows none before the socket's deadline.
std::optional<Certificate> certificate_of(ServerSocket& server, const std::string& host);

} // namespace qvtc::qvtcctl
