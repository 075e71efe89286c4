#include "qvtcctl/clients/failure_reasons.hpp"

#include "qvtcctl/clients/client_log.hpp"

#include <gtest/gtest.h>
#include <span>

namespace qvtc::qvtcctl {
namespace {

std::vector<std::span<const FailureReason>> tables() { return {failure_reasons, gateway_reasons}; }

TEST(QvtcctlFailureReasons, EachSaysWhatItMeansAndWhatToDoInWholeSentences) {
    for (const auto& table : tables()) {
        for (const FailureReason& reason : table) {
            EXPECT_FALSE(reason.words.empty());
            EXPECT_TRUE(reason.means.ends_with('.')) << reason.words;
            EXPECT_TRUE(reason.advice.ends_with('.')) << reason.words;
            EXPECT_NE(reason.types, field_sets::none) << reason.words;
        }
    }
}

bool hides(const FailureReason& earlier, const FailureReason& later) {
    const std::string text = std::string(later.words) + "\n" + std::string(later.also);
    return (later.types & ~earlier.types) == 0 && text.find(earlier.words) != std::string::npos &&
           text.find(earlier.also) != std::string::npos;
}

// Were a row behind one whose words its own words hold, it would never be found.
TEST(QvtcctlFailureReasons, NoRowHidesALaterOne) {
    for (const auto& table : tables()) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            for (std::size_t j = i + 1; j < table.size(); ++j) {
                EXPECT_FALSE(hides(table[i], table[j]))
                    << table[i].words << " hides " << table[j].words;
            }
        }
    }
}

// What the clients really write in these situations; the decisive words among the others.
TEST(QvtcctlFailureReasons, RealLogsAreUnderstood) {
    struct Case {
        std::string_view type, log, means;
    };
    const Case cases[] = {
        {"rdp",
         "[ERROR][com.freerdp.core] - freerdp_tcp_is_hostname_resolvable:freerdp_set_last_error_ex "
         "ERRCONNECT_DNS_NAME_NOT_FOUND [0x00020005]",
         "The server's name could not be found."},
        {"rdp",
         "[ERROR][com.freerdp.core] - freerdp_tcp_connect:freerdp_set_last_error_ex "
         "ERRCONNECT_CONNECT_FAILED [0x00020006]\n"
         "[ERROR][com.freerdp.core] - failed to connect to 10.9.9.9",
         "The server could not be reached: there is no route to it, or it did not answer."},
        {"rdp",
         "[ERROR][com.freerdp.client.common] - GetLine returned No such file or directory [2]\n"
         "[ERROR][com.freerdp.core] - nla_client_init:freerdp_set_last_error_ex "
         "ERRCONNECT_NO_OR_MISSING_CREDENTIALS [0x0002001B]\n"
         "[ERROR][com.freerdp.core.transport] - NLA begin failed",
         "The server wants a user name and a password, and the connection has none."},
        {"rdp",
         "[ERROR][com.freerdp.core] - SPNEGO received NTSTATUS: STATUS_LOGON_FAILURE [0xC000006D]\n"
         "[ERROR][com.freerdp.core] - nla_recv_pdu:freerdp_set_last_error_ex "
         "ERRCONNECT_LOGON_FAILURE [0x00020014]\n"
         "[ERROR][com.freerdp.core.transport] - BIO_read returned a system error 0: Success\n"
         "[ERROR][com.freerdp.core] - ERRCONNECT_CONNECT_TRANSPORT_FAILED [0x0002000D]",
         "The server refused the user name or the password."},
        {"rdp",
         "[ERROR][com.winpr.commandline] - Failed at index 1 [/t:my]: Invalid sigil\n"
         "Usage: xfreerdp [file] [options]",
         "The client did not understand its options, most often because of a blank in the name."},
        {"rdp",
         "[ERROR][com.freerdp.client.x11] - failed to open display: :9\n"
         "[ERROR][com.freerdp.client.x11] - Please check that the $DISPLAY environment variable is "
         "properly set.",
         "The client could not open the terminal's screen."},
        {"rdp",
         "[ERROR][com.freerdp.codec] - RleDecompress8to8 failed\n"
         "[ERROR][com.freerdp.core] - ERRCONNECT_CONNECT_CANCELLED [0x0002000B]\n"
         "[ERROR][com.freerdp.client.common] - Maximum reconnect retries exceeded",
         "The client could not decode the picture, most often because of a missing colour depth."},
        {"rdp",
         "[ERROR][com.freerdp.core] - Error: protocol security negotiation or connection failure\n"
         "Protocol Security Negotiation Failure",
         "Client and server found no common security protocol."},
        {"rdp",
         "BIO_read returned a system error 104: Connection reset by peer\n"
         "ERRCONNECT_CONNECT_TRANSPORT_FAILED",
         "The server broke the connection."},
        {"rdp",
         "[ERROR][com.freerdp.core] - ERRINFO_LOGOFF_BY_USER (0x0000000C):The disconnection "
         "was initiated by the user logging off their session on the server.",
         "The user logged off."},
        {"rdp",
         "[ERROR][com.freerdp.core] - Timeout waiting for activation\n"
         "[ERROR][com.freerdp.core] - ERRCONNECT_CONNECT_CANCELLED [0x0002000B]",
         "The server took too long to start the session."},
        {"vnc",
         "TightVNC Viewer version 1.3.10\n\nUsage: vncviewer [<OPTIONS>] [<HOST>][:<DISPLAY#>]\n"
         "        -passwd <PASSWD-FILENAME> (standard VNC authentication)\n"
         "Option names may be abbreviated, e.g. -bgr instead of -bgr233.\n",
         "The viewer did not understand its command line, which is one for TigerVNC's viewer."},
        {"rdp", "sh: line 1: xfreerdp: command not found", "The client program is not installed."},
        {"vnc", "sh: 1: vncviewer: not found", "The client program is not installed."},
        {"vnc", " main: unable to connect to socket: Connection refused (111)",
         "Nothing answered at the server's port. Probably it is closed, or the server is switched "
         "off."},
        {"vnc", "Authentication failure: password check failed!",
         "The server refused the password."},
        {"vnc", "CConn:       Authentication failure: The server is not configured properly",
         "The server cannot check passwords, because it has none of its own."},
        {"vnc", "CConn:       Authentication failure: Too many security failures",
         "The server lets nobody in for a while, because there were too many wrong passwords."},
        {"spice", "main channel: auth failure (wrong username/password?)",
         "The server refused the password."},
        {"spice",
         "virt-viewer-DEBUG: main channel: failed to connect Could not connect to 127.0.0.1: "
         "Connection refused",
         "Nothing answered at the server's port. Probably it is closed, or the server is switched "
         "off."},
        {"spice",
         "main channel: failed to connect Error resolving \"no.lan\": Name or service not known",
         "The server's name could not be found."},
        {"spice",
         "main channel: failed to connect Could not connect to 10.9.9.9: Network is unreachable",
         "There is no route to the server."},
        {"spice", "main channel: failed to connect Timed out", "The server could not be reached."},
        {"spice",
         "GSpice-WARNING **: 01:00:17.864: Missing port or tls-port in spice URI "
         "'spice://127.0.0.1'\n"
         "virt-viewer-DEBUG: 01:00:17.919: main channel: failed to connect \n",
         "The viewer opened no connection, because it was given no port."},
        {"spice", "virt-viewer-DEBUG: 01:00:17.919: main channel: failed to connect \n",
         "The viewer opened no connection and names no reason. Probably the port is missing."},
        {"vnc",
         " CConn:       unable to resolve host by name: Temporary failure in name\n"
         "              resolution (-3)",
         "The server's name could not be found."},
        {"vnc", "Can't open display: :0", "The client could not open the terminal's screen."},
        {"spice", "Gtk-WARNING **: 18:03:24.213: cannot open display: :0",
         "The client could not open the terminal's screen."},
        {"web", "Error: cannot open display: :0",
         "The client could not open the terminal's screen."},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(explain(*find_type(c.type), 33, c.log, "").means, c.means) << c.log;
    }
}

// What the RDP client writes when it goes through a gateway and does not get past it.
TEST(QvtcctlFailureReasons, OfAGatewayAreNotTheServers) {
    constexpr std::string_view negotiation =
        "[ERROR][com.freerdp.core.nego] - Protocol Security Negotiation Failure\n"
        "[ERROR][com.freerdp.core] - rdp_client_connect:freerdp_set_last_error_ex "
        "ERRCONNECT_SECURITY_NEGO_CONNECT_FAILED [0x0002000C]\n"
        "[ERROR][com.freerdp.core.connection] - Error: protocol security negotiation or connection "
        "failure\n";
    const std::string not_found =
        "[ERROR][com.freerdp.core.gateway.rpc] - error! Status Code: 404\n"
        "[ERROR][com.freerdp.core.gateway.http] - HTTP/1.1 404 Not Found\n"
        "[ERROR][com.freerdp.core.gateway.tsg] - tsg_check failure\n" +
        std::string(negotiation) +
        "[INFO][com.freerdp.core.gateway.rdg] - RD Gateway does not support HTTP transport.\n";
    const std::string no_logon = "GatewayPassword: " + std::string(negotiation);
    struct Case {
        std::string_view log, means, means_directly;
    };
    const Case cases[] = {
        {negotiation,
         "The gateway did not let the connection through: it refused the logon or the server's "
         "address, or could not reach the server.",
         "Client and server found no common security protocol."},
        {not_found, "There is no Remote Desktop gateway at rdGatewayAddress.",
         "Client and server found no common security protocol."},
        {no_logon,
         "The gateway asks for a logon, and the client has none: it gets one only when "
         "rdGatewayDomain is set.",
         "Client and server found no common security protocol."},
        {"freerdp_tcp_connect:freerdp_set_last_error_ex ERRCONNECT_DNS_NAME_NOT_FOUND [0x00020005]",
         "The gateway's name could not be found.", "The server's name could not be found."},
        {"freerdp_tcp_connect:freerdp_set_last_error_ex ERRCONNECT_CONNECT_FAILED [0x00020006]\n"
         "failed to connect to 10.9.9.8",
         "The gateway could not be reached: there is no route to it, or it did not answer.",
         "The server could not be reached: there is no route to it, or it did not answer."},
        {"rdg_tls_connect:freerdp_set_last_error_ex ERRCONNECT_TLS_CONNECT_FAILED [0x00020008]",
         "The gateway refused the connection, or does not speak TLS.",
         "The encrypted connection (TLS) could not be set up."},
        {"ERRCONNECT_LOGON_FAILURE", "The server refused the user name or the password.",
         "The server refused the user name or the password."},
    };
    const ConnectionType& rdp = *find_type("rdp");
    for (const Case& each : cases) {
        EXPECT_EQ(explain(rdp, 33, each.log, "", Route::gateway).means, each.means) << each.log;
        EXPECT_EQ(explain(rdp, 33, each.log, "").means, each.means_directly) << each.log;
    }
}

// The names that the RDP client has for failures: none is left without a word.
TEST(QvtcctlFailureReasons, EveryKindOfNameOfTheRdpClientIsUnderstood) {
    for (const std::string_view name :
         {"ERRCONNECT_ACCESS_DENIED", "ERRCONNECT_PRE_CONNECT_FAILED",
          "ERRINFO_CB_LOADING_DESTINATION", "ERRINFO_SERVER_CSRSS_CRASH", "ERRINFO_DECRYPT_FAILED",
          "STATUS_INVALID_LOGON_HOURS"}) {
        EXPECT_TRUE(explain(*find_type("rdp"), 33, name, "").known) << name;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
