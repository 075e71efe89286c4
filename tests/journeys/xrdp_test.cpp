// A real RDP server of another maker, which asks for the logon in the session's own window.
#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

namespace qvtc::test {
namespace {

/// xrdp at 127.0.0.1, with one of its security layers: "rdp", "tls" or "negotiate".
class Xrdp {
  public:
    explicit Xrdp(const std::string& layer) {
        output_of("sed -e 's/^security_layer=.*/security_layer=" + layer +
                  "/' -e 's#^port=3389#port=tcp://127.0.0.1:3389#' /etc/xrdp/xrdp.ini "
                  ">/tmp/xrdp.ini; mkdir -p /run/xrdp; "
                  "setsid xrdp --nodaemon --config /tmp/xrdp.ini >/tmp/xrdp.log 2>&1 </dev/null & "
                  "echo $! >/tmp/xrdp.pid");
        EXPECT_TRUE(wait_until([] { return listens(); }, patience)) << read_file("/tmp/xrdp.log");
    }
    ~Xrdp() {
        output_of("kill $(cat /tmp/xrdp.pid)");
        EXPECT_TRUE(wait_until([] { return !listens(); }, patience));
    }
    Xrdp(const Xrdp&) = delete;
    Xrdp& operator=(const Xrdp&) = delete;

  private:
    static bool listens() {
        return output_of("grep -q ' 0100007F:0D3D .* 0A ' /proc/net/tcp").status == 0;
    }
};

class XrdpJourney : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("xrdp");
        Journey::SetUp();
    }

    /// What the doctor says of the server's security.
    static std::string security() {
        for (const std::string& line : lines_of(output_of(QVTC_CONTROL " doctor 32 2>&1").text)) {
            if (line.find(" security ") != std::string::npos) return line;
        }
        return "";
    }
};

TEST_F(XrdpJourney, AServerThatAsksForTheLogonItselfIsKnownInEachSecurityLayer) {
    store_record({{"name", "desk"},
                  {"serverAddress", "127.0.0.1"},
                  {"colorDepth", "32"},
                  {"username", "nobody-there"},
                  {"password", stored_password("wrong")}});
    const std::string asks = " It asks for the logon itself, in the session's window: "
                             "\"connected\" does not mean that the logon succeeded.";
    {
        const Xrdp server("rdp");
        EXPECT_EQ(security(), "  warning  security     The server takes RDP security." + asks +
                                  " The client fails at some servers' RDP security.");
    }
    {
        const Xrdp server("negotiate");
        EXPECT_EQ(security(), "  ok       security     The server takes TLS, RDP security." + asks);
    }
    const Xrdp server("tls");
    EXPECT_EQ(security(), "  ok       security     The server takes TLS." + asks);
    // The password is wrong, and the client sees a session all the same.
    const std::string connected =
        "Connection 32 (desk): connected to the server; it asks for the logon itself";
    const Output launched = output_of(QVTC_CONTROL " launch 32 --wait 2>/dev/null");
    EXPECT_EQ(launched.status, 0);
    EXPECT_EQ(lines_of(launched.text).back(), connected);
    EXPECT_EQ(output_of(QVTC_CONTROL " status 32").text, connected + "\n");
}

} // namespace
} // namespace qvtc::test
