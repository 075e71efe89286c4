#pragma once

#include "qvtcctl/server_address.hpp"

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// What is known of a server's certificate.
struct Certificate {
    std::string subject;
    std::string expires;                   ///< as openssl writes it; empty when it does not tell
    std::optional<std::time_t> expires_at; ///< the same
    int fault = 0;                         ///< openssl's number of what is wrong; 0: nothing
    std::string fault_text;                ///< and its words for that

    bool operator==(const Certificate&) const = default;
};

/// The server's own certificate in what "openssl s_client" prints; nothing when it has got none.
std::optional<Certificate> certificate_in(std::string_view text);

/// Fetches the certificate with openssl, and lets it hold the certificate against the host's name
/// and the authorities that the terminal trusts. Nothing when there is none in three seconds.
std::optional<Certificate> certificate_of(const ServerAddress& server);

} // namespace qvtc::qvtcctl
