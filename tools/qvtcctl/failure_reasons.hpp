#pragma once

#include "qvtcctl/fields.hpp"

#include <array>
#include <string_view>

namespace qvtc::qvtcctl {

/// Words of a client's log, or of the library's answer, and what they mean to a person.
struct FailureReason {
    TypeSet types;           ///< the types whose clients write them
    std::string_view words;  ///< what to look for
    std::string_view also;   ///< must occur too, when not empty
    std::string_view means;  ///< one sentence
    std::string_view advice; ///< what to do; "{id}" stands for the connection's id
};

// The first row that fits wins. So the clear words stand before the vague ones which the same
// failure writes as well, and a row that needs a second text before the one that does not.
// clang-format off
inline constexpr auto failure_reasons = [] {
    using namespace field_sets;
    constexpr std::string_view ask_server = "Look at the server, or ask who runs it.";
    constexpr std::string_view new_password = "Check both: \"qvtcctl connection set {id} username=NAME --password\".";
    constexpr std::string_view check_address = "Check serverAddress and its port, and that the server is switched on.";
    constexpr std::string_view start_again = "Nothing to mend: \"qvtcctl launch {id}\" starts it again.";
    return std::to_array<FailureReason>({
        // Before there is a connection.
        {any, "command not found", "", "The client program is not installed.", "Install it on the terminal's image."},
        {any, ": not found", "sh: ", "The client program is not installed.", "Install it on the terminal's image."},
        {rdp, "Invalid sigil", "", "The client did not understand its options, most often because of a blank in the name.", "Give a name without blanks: \"qvtcctl connection set {id} name=NAME\"."},
        {any, "failed to open display", "", "The client could not open the terminal's screen.", "Check that the X server runs on display :0."},
        {any, "annot open display", "", "The client could not open the terminal's screen.", "Check that the X server runs on display :0."},
        {any, "an't open display", "", "The client could not open the terminal's screen.", "Check that the X server runs on display :0."},
        {any, "no DISPLAY environment variable", "", "The client was not told which screen to use.", "Start it from a program that has DISPLAY=:0 in its environment."},
        {rdp, "ERRCONNECT_DNS_NAME_NOT_FOUND", "", "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {rdp, "ERRCONNECT_DNS_ERROR", "", "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {rdp, "RleDecompress", "", "The client could not decode the picture, most often because of a missing colour depth.", "Set one: \"qvtcctl connection set {id} colorDepth=32\"."},
        // The account.
        {rdp, "ACCOUNT_LOCKED_OUT", "", "The user's account is locked.", ask_server},
        {rdp, "ACCOUNT_DISABLED", "", "The user's account is disabled.", ask_server},
        {rdp, "ACCOUNT_EXPIRED", "", "The user's account has expired.", ask_server},
        {rdp, "PASSWORD_MUST_CHANGE", "", "The user must choose a new password before the first logon.", "Change the password on the server, then store it: \"qvtcctl connection set {id} --password\"."},
        {rdp, "PASSWORD_CERTAINLY_EXPIRED", "", "The user's password has expired.", "Change the password on the server, then store it: \"qvtcctl connection set {id} --password\"."},
        {rdp, "PASSWORD_EXPIRED", "", "The user's password has expired.", "Change the password on the server, then store it: \"qvtcctl connection set {id} --password\"."},
        {rdp, "STATUS_INVALID_LOGON_HOURS", "", "The user may not log on at this time of day.", ask_server},
        {rdp, "STATUS_INVALID_WORKSTATION", "", "The user may not log on from this terminal.", ask_server},
        {rdp, "LOGON_TYPE_NOT_GRANTED", "", "The user may not log on remotely.", ask_server},
        {rdp, "ACCOUNT_RESTRICTION", "", "The server does not let this account log on, for example because its password is empty.", ask_server},
        {rdp, "ERRCONNECT_NO_OR_MISSING_CREDENTIALS", "", "The server wants a user name and a password, and the connection has none.", "Store them: \"qvtcctl connection set {id} username=NAME --password\"."},
        {rdp, "LOGON_FAILURE", "", "The server refused the user name or the password.", new_password},
        {rdp, "ERRCONNECT_WRONG_PASSWORD", "", "The server refused the password.", new_password},
        {rdp, "STATUS_WRONG_PASSWORD", "", "The server refused the password.", new_password},
        {rdp, "STATUS_NO_SUCH_USER", "", "The server does not know the user.", new_password},
        {rdp, "ERRCONNECT_AUTHENTICATION_FAILED", "", "The logon failed.", new_password},
        {rdp, "ERRCONNECT_KDC_UNREACHABLE", "", "No domain controller answered, so the logon could not be checked.", ask_server},
        {rdp, "ERRCONNECT_CLIENT_REVOKED", "", "The server has withdrawn the user's right to log on.", ask_server},
        {rdp, "ERRCONNECT_ACCESS_DENIED", "", "The server does not let this user in.", ask_server},
        {rdp, "ERRCONNECT_INSUFFICIENT_PRIVILEGES", "", "The user has no right to log on remotely.", ask_server},
        {rdp, "HTTP/1.1 401 Unauthorized", "", "The gateway refused the user name or the password.", "Check rdGatewayUsername, rdGatewayDomain and --gateway-password."},
        // The session has ended.
        {rdp, "ERRINFO_LOGOFF_BY_USER", "", "The user logged off.", start_again},
        {rdp, "ERRINFO_RPC_INITIATED_DISCONNECT", "", "The session was disconnected at the server.", start_again},
        {rdp, "ERRINFO_RPC_INITIATED_LOGOFF", "", "The session was logged off at the server.", start_again},
        {rdp, "ERRINFO_DISCONNECTED_BY_OTHER_CONNECTION", "", "The same user logged on from elsewhere and took the session over.", start_again},
        {rdp, "ERRINFO_IDLE_TIMEOUT", "", "The server ended the session because nobody used it.", start_again},
        {rdp, "ERRINFO_LOGON_TIMEOUT", "", "The server ended the session because its time was up.", start_again},
        {rdp, "ERRINFO_OUT_OF_MEMORY", "", "The server has too little memory for another session.", ask_server},
        {rdp, "ERRINFO_SERVER_DENIED_CONNECTION", "", "The server denied the connection.", ask_server},
        {rdp, "ERRINFO_SERVER_INSUFFICIENT_PRIVILEGES", "", "The user has no right to log on remotely.", ask_server},
        {rdp, "ERRINFO_SERVER_FRESH_CREDENTIALS_REQUIRED", "", "The server does not accept a stored password.", ask_server},
        {rdp, "ERRINFO_LICENSE_", "", "The server could not give this terminal a licence.", ask_server},
        {rdp, "ERRINFO_CB_", "", "The connection broker found no desktop for the user.", ask_server},
        {rdp, "ERRINFO_SERVER_", "_CRASH", "The session crashed at the server.", start_again},
        {rdp, "There are no available endpoints", "", "The broker has no free desktop.", ask_server},
        {rdp, "The user cannot connect to the server", "", "The user may not use this server.", ask_server},
        {rdp | spice, "out of service", "", "The server is out of service.", ask_server},
        {rdp, "RAIL exec error:", "", "The program to start could not be started.", "Check appFullpath and workDir."},
        // The way to the server.
        {rdp, "Protocol Security Negotiation Failure", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "Error: protocol security", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "ERRCONNECT_SECURITY_NEGO_CONNECT_FAILED", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "ERRCONNECT_TLS_CONNECT_FAILED", "", "The encrypted connection (TLS) could not be set up.", ask_server},
        {rdp, "SSL_read: Failure", "", "The encrypted connection (TLS) broke.", ask_server},
        {any, "Connection reset by peer", "", "The server broke the connection.", check_address},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "system error 0: Success", "The server hung up during the logon. Probably the user name or the password is wrong.", new_password},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "system error 32: Broken pipe", "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "", "The connection to the server broke.", check_address},
        {rdp, "ERRCONNECT_CONNECT_FAILED", "", "The server could not be reached: there is no way to it, or it did not answer.", check_address},
        {any, "No route to host", "", "There is no way to the server.", check_address},
        {any, "Network is unreachable", "", "There is no way to the server.", check_address},
        {rdp, "unable to connect to", "", "The server could not be reached.", check_address},
        {rdp, "ERRCONNECT_MCS_CONNECT_INITIAL_ERROR", "", "The server refused the session.", ask_server},
        {rdp, "ERRCONNECT_ACTIVATION_TIMEOUT", "", "The server took too long to start the session.", ask_server},
        {rdp, "ERRCONNECT_TARGET_BOOTING", "", "The desktop is still starting.", "Try again in a minute: \"qvtcctl launch {id} --wait\"."},
        {rdp, "Maximum reconnect retries exceeded", "", "The connection was lost, and the client could not get it back.", check_address},
        {rdp, "ERRCONNECT_CONNECT_CANCELLED", "", "The client broke the connection off.", ask_server},
        {rdp, "ERRINFO_UNKNOWN", "", "The server ended the session without saying why.", ask_server},
        {rdp, "ERRCONNECT_", "", "The connection could not be made.", ask_server},
        {rdp, "ERRINFO_", "", "The server ended the session.", ask_server},
        // Other clients.
        {spice, "openssl_verify: Error in certificate chain verification", "", "The server's certificate is not trusted.", "Check the server's certificate and the one that the terminal holds for it."},
        {spice, "main channel: auth failure", "", "The server refused the password.", "Enter the password in the viewer's window."},
        {spice, "main channel: failed to connect", "Connection refused", "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {spice, "main channel: failed to connect", "Error resolving", "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {spice, "main channel: failed to connect", "", "The server could not be reached.", check_address},
        {vnc, "uthentication failure", "", "The server refused the password.", "Check it: \"qvtcctl connection set {id} --password\"."},
        {vnc, "password check failed", "", "The server refused the password.", "Check it: \"qvtcctl connection set {id} --password\"."},
        {any, "Connection refused", "", "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {vnc, "unable to resolve host by name", "", "The server's name could not be found.", "Check serverAddress and the terminal's name server. Remove a stored password, which the viewer takes for the beginning of the address: \"qvtcctl connection set {id} password=\"."},
        {any, "Name or service not known", "", "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {vnc, "unable to connect to socket", "", "The server could not be reached.", check_address},
        // What the library itself says.
        {any, "@qvlaunchclient password decode error", "", "The stored password cannot be decoded.", "Store it again: \"qvtcctl connection set {id} --password\"."},
        {any, "@qvlaunchclient pgupasswd decode error", "", "The stored gateway password cannot be decoded.", "Store it again: \"qvtcctl connection set {id} --gateway-password\"."},
        {any, "parameter error!", "", "The connection has no usable serverAddress.", "Set one: \"qvtcctl connection set {id} serverAddress=ADDRESS\"."},
        {any, "not velopane!", "", "No broker answered at the address.", "Check serverAddress, and that the broker is switched on."},
        {rdp, "An error occurred", "", "The client reports an error.", ask_server},
    });
}();

/// The same for clients that the terminal sees no window of, although they have not failed. Looked
/// at when no reason of the first table fits.
inline constexpr auto missing_window_reasons = std::to_array<FailureReason>({
    {field_sets::vnc, "Using pixel format", "", "The viewer is connected, but its window does not say \"vncviewer\", by which the terminal would know it.", "Look at the terminal's screen. To have it known, let the server call its desktop something that holds \"vncviewer\"."},
    {field_sets::vnc, "Choosing security type VncAuth(2)", "", "The viewer asks for the server's password on the terminal's screen.", "Enter the password there."},
});

/// What a client writes when its connection is there; a failure before that is past.
struct SuccessWords {
    TypeSet types;
    std::string_view words;
};
inline constexpr auto success_words = std::to_array<SuccessWords>({
    {field_sets::spice, "main channel: opened"},
    {field_sets::vnc, "Using pixel format"},
});
// clang-format on

} // namespace qvtc::qvtcctl
