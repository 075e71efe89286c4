#pragma once

#include "qvtcctl/connections/fields.hpp"

#include <array>
#include <string_view>

namespace qvtc::qvtcctl {

/// Words of a client's log, or of the library's answer, and what they mean to a person.
struct FailureReason {
    TypeSet types;             ///< the types whose clients write them
    std::string_view words;    ///< what to look for
    std::string_view also;     ///< must occur too, when not empty
    std::string_view means;    ///< one sentence
    std::string_view advice;   ///< what to do; "{id}" stands for the connection's id
    bool ends_session = false; ///< true: of a session that had begun
};

// The first row that fits wins. So the clear words stand before the vague ones which the same
// failure writes as well, and a row that needs a second text before the one that does not.
// clang-format off
inline constexpr auto failure_reasons = [] {
    using namespace field_sets;
    constexpr std::string_view ask_server = "Look at the server, or ask who runs it.";
    constexpr std::string_view new_password = "Check both: \"qvtcctl connection set {id} username=NAME --password\".";
    constexpr std::string_view check_address = "Check serverAddress and its port, and that the server is switched on.";
    constexpr std::string_view set_port = "Set it: \"qvtcctl connection set {id} port=PORT\".";
    constexpr std::string_view start_again = "Nothing to mend: \"qvtcctl launch {id}\" starts it again.";
    constexpr std::string_view trust = "Install the certificate of the authority that issued it in the browser, and use the name that it was issued for.";
    // A stored password would not reach the viewer as one.
    constexpr std::string_view enter_another = "Enter the right one in the viewer's window: \"qvtcctl launch {id}\" opens it again.";
    constexpr std::string_view too_many_tries = "The server lets nobody in for a while, because there were too many wrong passwords.";
    constexpr std::string_view wait_a_minute = "Wait a minute, then try again: \"qvtcctl launch {id} --wait\".";
    constexpr std::string_view error_page = "LOCATION_CHANGE_ERROR_PAGE";
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
        {rdp, "Timeout waiting for activation", "", "The server took too long to start the session.", ask_server},
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
        {rdp, "HTTP/1.1 401 Unauthorized", "", "The gateway refused the user name or the password.", "Check rdGatewayDomain, and the gateway's password: \"qvtcctl connection set {id} --gateway-password\"."},
        // A session that had begun has ended.
        {rdp, "ERRINFO_LOGOFF_BY_USER", "", "The user logged off.", start_again, true},
        {rdp, "ERRINFO_RPC_INITIATED_DISCONNECT", "", "The session was disconnected at the server.", start_again, true},
        {rdp, "ERRINFO_RPC_INITIATED_LOGOFF", "", "The session was logged off at the server.", start_again, true},
        {rdp, "ERRINFO_DISCONNECTED_BY_OTHER_CONNECTION", "", "The same user logged on from elsewhere and took the session over.", start_again, true},
        {rdp, "ERRINFO_IDLE_TIMEOUT", "", "The server ended the session because nobody used it.", start_again, true},
        {rdp, "ERRINFO_LOGON_TIMEOUT", "", "The server ended the session because its time was up.", start_again, true},
        {rdp, "ERRINFO_OUT_OF_MEMORY", "", "The server has too little memory for another session.", ask_server},
        {rdp, "ERRINFO_SERVER_DENIED_CONNECTION", "", "The server denied the connection.", ask_server},
        {rdp, "ERRINFO_SERVER_INSUFFICIENT_PRIVILEGES", "", "The user has no right to log on remotely.", ask_server},
        {rdp, "ERRINFO_SERVER_FRESH_CREDENTIALS_REQUIRED", "", "The server does not accept a stored password.", ask_server},
        {rdp, "ERRINFO_LICENSE_", "", "The server could not give this terminal a licence.", ask_server},
        {rdp, "ERRINFO_CB_", "", "The connection broker found no desktop for the user.", ask_server},
        {rdp, "ERRINFO_SERVER_", "_CRASH", "The session crashed at the server.", start_again, true},
        {rdp, "There are no available endpoints", "", "The broker has no free desktop.", ask_server},
        {rdp, "The user cannot connect to the server", "", "The user may not use this server.", ask_server},
        {rdp | spice, "out of service", "", "The server is out of service.", ask_server},
        {rdp, "RAIL exec error:", "", "The program to start could not be started.", "Check appFullpath and workDir."},
        // The network on the way to the server.
        {rdp, "Protocol Security Negotiation Failure", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "Error: protocol security", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "ERRCONNECT_SECURITY_NEGO_CONNECT_FAILED", "", "Client and server found no common security protocol.", ask_server},
        {rdp, "ERRCONNECT_TLS_CONNECT_FAILED", "", "The encrypted connection (TLS) could not be set up.", ask_server},
        {rdp, "SSL_read: Failure", "", "The encrypted connection (TLS) broke.", ask_server},
        {any, "Connection reset by peer", "", "The server broke the connection.", check_address},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "system error 0: Success", "The server hung up during the logon. Probably the user name or the password is wrong.", new_password},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "system error 32: Broken pipe", "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {rdp, "ERRCONNECT_CONNECT_TRANSPORT_FAILED", "", "The connection to the server broke.", check_address},
        {rdp, "ERRCONNECT_CONNECT_FAILED", "", "The server could not be reached: there is no route to it, or it did not answer.", check_address},
        {any, "No route to host", "", "There is no route to the server.", check_address},
        {any, "Network is unreachable", "", "There is no route to the server.", check_address},
        {rdp, "unable to connect to", "", "The server could not be reached.", check_address},
        {rdp, "ERRCONNECT_MCS_CONNECT_INITIAL_ERROR", "", "The server refused the session.", ask_server},
        {rdp, "ERRCONNECT_ACTIVATION_TIMEOUT", "", "The server took too long to start the session.", ask_server},
        {rdp, "ERRCONNECT_TARGET_BOOTING", "", "The desktop is still starting.", "Try again in a minute: \"qvtcctl launch {id} --wait\"."},
        {rdp, "Maximum reconnect retries exceeded", "", "The connection was lost, and the client could not get it back.", check_address},
        {rdp, "ERRCONNECT_CONNECT_CANCELLED", "", "The client broke the connection off.", ask_server},
        {rdp, "ERRINFO_UNKNOWN", "", "The server ended the session without saying why.", ask_server},
        {rdp, "Authentication failure", "", "The server refused the user name or the password.", new_password},
        {rdp, "ERRCONNECT_", "", "The connection could not be made.", ask_server},
        {rdp, "ERRINFO_", "", "The server ended the session.", ask_server},
        // Other clients.
        {spice, "openssl_verify: Error in certificate chain verification", "", "The server's certificate is not trusted.", "Check the server's certificate and the one that the terminal holds for it."},
        {spice, "main channel: auth failure", "", "The server refused the password.", "Enter the password in the viewer's window."},
        {spice, "main channel: failed to connect", "Connection refused", "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {spice, "main channel: failed to connect", "Error resolving", "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {spice, "Missing port or tls-port", "", "The viewer opened no connection, because it was given no port.", set_port},
        {spice, "main channel: failed to connect", "failed to connect \n", "The viewer opened no connection and names no reason. Probably the port is missing.", set_port},
        {spice, "main channel: failed to connect", "", "The server could not be reached.", check_address},
        {vnc, "Too many security failures", "", too_many_tries, wait_a_minute},
        {vnc, "Too many authentication failures", "", too_many_tries, wait_a_minute},
        {vnc, "The server is not configured properly", "", "The server cannot check passwords, because it has none of its own.", ask_server},
        {vnc, "uthentication failure", "", "The server refused the password.", enter_another},
        {vnc, "password check failed", "", "The server refused the password.", enter_another},
        {vnc, "Usage: vncviewer", "", "The viewer did not understand its command line, which is one for TigerVNC's viewer.", "Install TigerVNC's viewer as \"vncviewer\" on the terminal's image."},
        {web, "NS_ERROR_UNKNOWN_HOST", error_page, "The server's name could not be found.", "Check serverAddress, and the terminal's name server."},
        {web, "NS_ERROR_CONNECTION_REFUSED", error_page, "Nothing answered at the server's port. Probably it is closed, or the server is switched off.", check_address},
        {web, "NS_ERROR_NET_TIMEOUT", error_page, "The server did not answer.", check_address},
        {web, "NS_ERROR_NET_RESET", error_page, "The server broke the connection.", check_address},
        {web, "NS_ERROR_PROXY_", error_page, "The browser could not reach its proxy.", "Check the browser's proxy settings."},
        {web, "_PKIX_ERROR_SELF_SIGNED_CERT", error_page, "The server's certificate is self-signed, and the browser warns of it instead of showing the page.", trust},
        {web, "SEC_ERROR_UNKNOWN_ISSUER", error_page, "The server's certificate is not trusted, and the browser warns of it instead of showing the page.", trust},
        {web, "SSL_ERROR_BAD_CERT_DOMAIN", error_page, "The server's certificate is for another name, and the browser warns of it instead of showing the page.", "Use the name that the certificate was issued for: \"qvtcctl connection set {id} serverAddress=ADDRESS\"."},
        {web, "_EXPIRED_", error_page, "The server's certificate has expired, and the browser warns of it instead of showing the page.", "Ask who runs the server to renew it, and check the terminal's clock."},
        {web, "NS_ERROR_MODULE_SECURITY", error_page, "The encrypted connection (TLS) could not be set up.", ask_server},
        {web, error_page, "", "The browser shows an error page.", "Look at the terminal's screen."},
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

/// The same for an RDP client that goes through a gateway: until the gateway lets it through, it is
/// the gateway that its words are about. Looked at before the first table. Of what the gateway
/// answers, the client's words show only 404; 401, 403 and any other status read alike.
inline constexpr auto gateway_reasons = [] {
    using field_sets::rdp;
    constexpr std::string_view check_address = "Check rdGatewayAddress and its port, and that the gateway is switched on.";
    constexpr std::string_view check_name = "Check rdGatewayAddress, and the terminal's name server.";
    constexpr std::string_view check_logon = "Check rdGatewayDomain, serverAddress and the gateway's password: \"qvtcctl connection set {id} --gateway-password\". The gateway's log has its own reason.";
    constexpr std::string_view refused = "The gateway did not let the connection through: it refused the logon or the server's address, or could not reach the server.";
    return std::to_array<FailureReason>({
        {rdp, "ERRCONNECT_DNS_NAME_NOT_FOUND", "", "The gateway's name could not be found.", check_name},
        {rdp, "ERRCONNECT_DNS_ERROR", "", "The gateway's name could not be found.", check_name},
        {rdp, "ERRCONNECT_CONNECT_FAILED", "", "The gateway could not be reached: there is no route to it, or it did not answer.", check_address},
        {rdp, "ERRCONNECT_TLS_CONNECT_FAILED", "rdg_tls_connect", "The gateway refused the connection, or does not speak TLS.", check_address},
        {rdp, "RD Gateway does not support HTTP transport", "", "There is no Remote Desktop gateway at rdGatewayAddress.", check_address},
        {rdp, "tsg_check failure", "", "There is no Remote Desktop gateway at rdGatewayAddress.", check_address},
        {rdp, "GatewayPassword:", "", "The gateway asks for a logon, and the client has none: it gets one only when rdGatewayDomain is set.", "Store it: \"qvtcctl connection set {id} rdGatewayDomain=DOMAIN --gateway-password\"."},
        {rdp, "Protocol Security Negotiation Failure", "", refused, check_logon},
        {rdp, "Error: protocol security", "", refused, check_logon},
        {rdp, "ERRCONNECT_SECURITY_NEGO_CONNECT_FAILED", "", refused, check_logon},
    });
}();

/// What a client writes when its connection is there (a failure before that is past), or when it
/// asks for a password on the screen.
struct ClientWords {
    TypeSet types;
    std::string_view words;
};
inline constexpr auto success_words = std::to_array<ClientWords>({
    {field_sets::spice, "main channel: opened"},
    {field_sets::vnc, "Using pixel format"},
    {field_sets::vnc, "Connected to RFB server"},
    {field_sets::web, "STATE_STOP|STATE_IS_NETWORK|STATE_IS_WINDOW, NS_OK)"},
    {field_sets::web, ", 0) on {top:1"}, // the page takes its place, and is no error page
});
inline constexpr auto asking_words = std::to_array<ClientWords>({
    {field_sets::vnc, "Choosing security type VncAuth"},
    {field_sets::vnc, "Choosing security type TLSVnc"},
    {field_sets::vnc, "Choosing security type X509Vnc"},
    {field_sets::vnc, "Choosing security type Plain"},
    {field_sets::vnc, "Choosing security type TLSPlain"},
    {field_sets::vnc, "Choosing security type X509Plain"},
});
// clang-format on

} // namespace qvtc::qvtcctl
