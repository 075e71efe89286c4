// The real RDP client before gateways that do not let it through.
#include "desktop.hpp"
#include "faulty_server.hpp"
#include "records.hpp"
#include "support/support.hpp"

namespace qvtc::test {
namespace {

class GatewayJourney : public Journey {
  protected:
    static unsigned stored(const std::string& gateway) {
        return store_record({{"name", "desk"},
                             {"serverAddress", "10.9.9.9"},
                             {"colorDepth", "32"},
                             {"username", "demo"},
                             {"domain", "D"},
                             {"useRdGateway", "on"},
                             {"rdGatewayAddress", gateway},
                             {"rdGatewayDomain", "GD"},
                             {"rdGatewayPassword", stored_password("wrong")}});
    }

    /// What qvtcctl says that the failure of a launch means.
    static std::string meaning_of_launch(const std::string& gateway) {
        constexpr std::string_view label = "  What it means:   ";
        const std::string id = std::to_string(stored(gateway));
        const Output launched = output_of(QVTC_CONTROL " launch " + id + " --wait 2>&1");
        EXPECT_EQ(launched.status, 4) << launched.text;
        for (const std::string& line : lines_of(launched.text)) {
            if (line.starts_with(label)) return line.substr(label.size());
        }
        return launched.text;
    }

    static std::string meaning_with_status(const std::string& status) {
        const FaultyServer gateway(answer_with_status(status));
        return meaning_of_launch("127.0.0.1:" + gateway.port());
    }
};

TEST_F(GatewayJourney, ALaunchBlamesTheGatewayAndNotTheServer) {
    const std::string refused = "The gateway did not let the connection through: it refused the "
                                "logon or the server's address, or could not reach the server.";
    EXPECT_EQ(meaning_with_status("401 Unauthorized"), refused);
    EXPECT_EQ(meaning_with_status("403 Forbidden"), refused);
    EXPECT_EQ(meaning_with_status("404 Not Found"),
              "There is no Remote Desktop gateway at rdGatewayAddress.");
    EXPECT_EQ(meaning_of_launch("127.0.0.1:1"),
              "The gateway refused the connection, or does not speak TLS.");
    EXPECT_EQ(meaning_of_launch("no-such-gateway.invalid"),
              "The gateway's name could not be found.");
}

// Its command line has /cert-ignore, which holds for the gateway's certificate too.
TEST_F(GatewayJourney, ADoctorSaysThatTheClientDoesNotCheckTheCertificate) {
    const FaultyServer gateway(answer_with_status("404 Not Found"));
    stored("127.0.0.1:" + gateway.port());
    const std::string told = output_of(QVTC_CONTROL " doctor 32 2>&1").text;
    EXPECT_NE(told.find("  ok       certificate  It is not trusted: self-signed certificate. "
                        "Issued to CN = 127.0.0.1, valid until 2099-12-31. The client does not "
                        "check it.\n"),
              std::string::npos)
        << told;
}

} // namespace
} // namespace qvtc::test
