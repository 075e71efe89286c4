// A real RDP server of another maker, which asks for the logon in the session's own window.
#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <optional>
#include <unistd.h>

namespace qvtc::test {
namespace {

constexpr const char* manager_log = "/var/log/xrdp-sesman.log";

/// Starts a program that ends with this object.
class Daemon {
  public:
    Daemon(const std::string& command, const std::string& log) {
        process_ = output_of("setsid " + command + " >" + log + " 2>&1 </dev/null & echo $!").text;
    }
    ~Daemon() { output_of("kill " + process_); }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

  private:
    std::string process_;
};

/// xrdp at 127.0.0.1, with one of its security layers: "rdp", "tls" or "negotiate". Its own keys
/// are for root only.
class Xrdp {
  public:
    explicit Xrdp(const std::string& layer) {
        output_of("mkdir -p /run/xrdp; xrdp-keygen xrdp /etc/xrdp/rsakeys.ini; openssl req -x509 "
                  "-newkey rsa:2048 -nodes -keyout /tmp/key.pem -out /tmp/cert.pem "
                  "-subj /CN=127.0.0.1 -days 2 2>&1");
        output_of("sed -e 's/^security_layer=.*/security_layer=" + layer +
                  "/; s/^autorun=.*/autorun=Xvnc/; s#^port=3389#port=tcp://127.0.0.1:3389#; "
                  "s#^certificate=.*#certificate=/tmp/cert.pem#; "
                  "s#^key_file=.*#key_file=/tmp/key.pem#' /etc/xrdp/xrdp.ini >/tmp/xrdp.ini");
        server_.emplace("xrdp --nodaemon --config /tmp/xrdp.ini", "/tmp/xrdp.log");
        EXPECT_TRUE(wait_until([] { return listens(); }, patience)) << read_file("/tmp/xrdp.log");
    }
    ~Xrdp() {
        server_.reset();
        EXPECT_TRUE(wait_until([] { return !listens(); }, patience));
    }
    Xrdp(const Xrdp&) = delete;
    Xrdp& operator=(const Xrdp&) = delete;

  private:
    // To connect would be to begin a session.
    static bool listens() {
        return output_of("grep -q ' 0100007F:0D3D .* 0A ' /proc/net/tcp").status == 0;
    }

    std::optional<Daemon> server_;
};

/// xrdp's session manager, without which there are no sessions.
class SessionManager {
  public:
    /// A session runs a shell command, and ends with it.
    explicit SessionManager(const std::string& session) {
        write_file("/etc/xrdp/startwm.sh", "#!/bin/sh\n" + session + "\n");
        EXPECT_TRUE(wait_until([] { return log_has("starting xrdp-sesman"); }, patience));
    }

    static bool log_has(const std::string& words) {
        return file_exists(manager_log) && read_file(manager_log).find(words) != std::string::npos;
    }

  private:
    Daemon manager_{"xrdp-sesman --nodaemon", "/tmp/sesman.log"};
};

/// What "qvtcctl" says of connection 32.
Output control(const std::string& arguments) {
    return output_of(QVTC_CONTROL " " + arguments + " 2>&1");
}

bool says(const Output& output, const std::string& words) {
    return output.text.find(words) != std::string::npos;
}

class XrdpJourney : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("xrdp");
        QVTC_NEED_PROGRAM("openssl");
        Journey::SetUp();
    }

    static void store(const std::string& user, const std::string& password) {
        store_record({{"name", "desk"},
                      {"serverAddress", "127.0.0.1"},
                      {"colorDepth", "32"},
                      {"username", user},
                      {"password", stored_password(password)}});
    }

    /// What the doctor says of the server's security.
    static std::string security() {
        for (const std::string& line : lines_of(control("doctor 32").text)) {
            if (line.find(" security ") != std::string::npos) return line;
        }
        return "";
    }

    /// Launches the connection, of which the client sees no more than a window.
    static void expect_window_of_unknown_contents() {
        const std::string connected =
            "Connection 32 (desk): connected to the server; it asks for the logon itself";
        const Output launched = control("launch 32 --wait");
        EXPECT_EQ(launched.status, 0);
        EXPECT_EQ(lines_of(launched.text).back(), connected);
        EXPECT_EQ(control("status 32").text, connected + "\n");
    }
};

const std::string asks = " It asks for the logon itself, in the session's window: \"connected\" "
                         "does not mean that the logon succeeded.";

// There is no session manager: the user sees the server's own error.
TEST_F(XrdpJourney, AServerThatAsksForTheLogonItselfIsKnownInEachSecurityLayer) {
    store("nobody-there", "wrong");
    {
        const Xrdp server("negotiate");
        EXPECT_EQ(security(), "  ok       security     The server takes TLS, RDP security." + asks);
        expect_window_of_unknown_contents();
        control("cancel");
    }
    const Xrdp server("tls");
    EXPECT_EQ(security(), "  ok       security     The server takes TLS." + asks);
    expect_window_of_unknown_contents();
}

// Some versions do not understand what the client encrypts, and say that the user logged off;
// others begin the session.
TEST_F(XrdpJourney, AServersOwnEncryptionIsToldAsItEnds) {
    store("nobody-there", "wrong");
    const Xrdp server("rdp");
    EXPECT_EQ(security(), "  warning  security     The server takes RDP security." + asks +
                              " The client fails at some servers' RDP security.");
    const std::string reason =
        "  What it means:   The server ended the session before it began.\n"
        "  What to do:      Look at the server's log. An xrdp that is set to security_layer=rdp "
        "does this: let it use TLS.\n"
        "  Client's words:  ERRINFO_LOGOFF_BY_USER\n";
    const Output launched = control("launch 32 --wait");
    if (read_file("/home/root/freerdp.log").find("ERRINFO_LOGOFF_BY_USER") == std::string::npos) {
        EXPECT_TRUE(says(launched, "it asks for the logon itself")) << launched.text;
        EXPECT_TRUE(says(control("status 32"), "it asks for the logon itself"));
        return;
    }
    EXPECT_EQ(launched.status, 4);
    EXPECT_TRUE(says(launched, "connection 32 (desk) failed.\n" + reason)) << launched.text;
    const Output status = control("status 32");
    EXPECT_EQ(status.status, 4);
    EXPECT_TRUE(status.text.starts_with("Connection 32 (desk): not running\n"
                                        "  The last launch failed or ended:\n" +
                                        reason))
        << status.text;
}

TEST_F(XrdpJourney, ARefusedLogonIsNotToldAsOneThatSucceeded) {
    const SessionManager manager("sleep 100");
    const Xrdp server("tls");
    store("nobody-there", "wrong");
    expect_window_of_unknown_contents();
    EXPECT_TRUE(wait_until([] { return SessionManager::log_has("AUTHFAIL"); }, patience))
        << read_file(manager_log);
    EXPECT_TRUE(says(control("status 32"), "it asks for the logon itself"));
}

TEST_F(XrdpJourney, ASessionWasOneHoweverSoonItEnds) {
    QVTC_NEED(terminal_mode() == TerminalMode::root, "there is no second user here");
    QVTC_NEED_PROGRAM("Xvnc");
    ASSERT_EQ(output_of("useradd -m berta && echo berta:secret1 | chpasswd").status, 0);
    const SessionManager manager("xsetroot -solid '#123456'\n"
                                 "until [ -e /tmp/end ]; do sleep 0.05; done");
    const Xrdp server("tls");
    store("berta", "secret1");
    EXPECT_EQ(control("launch 32").status, 0);
    EXPECT_TRUE(wait_for_colour(640, 400, 0x123456)) << read_file(manager_log);
    write_file("/tmp/end", "");
    EXPECT_TRUE(wait_until([] { return !runs("xfreerdp"); }, patience)) << read_file(manager_log);
    // As if it had ended in the very second in which it was launched.
    const std::string log = rdp_log;
    output_of("touch -d \"@$(sed -n '1s/[^0-9]*\\([0-9]*\\).*/\\1/p' " + log + ")\" " + log);
    const Output status = control("status 32");
    EXPECT_TRUE(says(status, "  What it means:   The user logged off.\n")) << status.text;
}

} // namespace
} // namespace qvtc::test
