#pragma once

/// What clients write into their logs when a session does not come about. The
/// first phrase of a table that occurs anywhere is the reason, wherever the
/// others stand.
namespace qvtc::clients {

struct RdpPhrase {
    const char* text;
    bool in_earlier_form; ///< also looked for by the earlier form of the diagnosis
};

// clang-format off
inline constexpr RdpPhrase rdp_failures[] = {
    {"unable to connect to",                   true},
    {"HTTP/1.1 401 Unauthorized",              true},
    {"Authentication failure",                 true},
    {"RAIL exec error:",                       true},
    {"The user cannot connect to the server",  true},
    {"ERRCONNECT_AUTHENTICATION_FAILED",       false},
    {"ERRINFO_UNKNOWN",                        true},
    {"connect: No route to host",              true},
    {"There are no available endpoints",       true},
    {"An error occurred",                      true},
    {"SSL_read: Failure",                      true},
    {"Error: protocol security",               true},
    {"Connection reset by peer",               true},
    {"ERRINFO_LICENSE_CANT_FINISH_PROTOCOL",   true},
    {"Protocol Security Negotiation Failure",  false},
    {"out of service",                         true},
    {"ERRCONNECT_NO_OR_MISSING_CREDENTIALS",   false},
};
// clang-format on

inline constexpr const char* spice_failures[] = {
    "openssl_verify: Error in certificate chain verification",
    "main channel: failed to connect",
    "main channel: auth failure (wrong password?)",
    "out of service",
};

inline constexpr const char* vnc_failures[] = {
    "Authentication failure",
    "Connection refused",
    "No route to host",
};

} // namespace qvtc::clients
