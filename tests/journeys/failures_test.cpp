#include "desktop.hpp"
#include "faulty_server.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <optional>

namespace qvtc::test {
namespace {

/// A launch that must fail.
struct Failure {
    const char* name;
    const char* remote;             ///< options of the remote desktop, null for none
    FaultyServer::Behaviour server; ///< or a server of our own, whose port takes the place of PORT
    Fields fields;                  ///< of the record, besides its name and 127.0.0.1
    const char* words;              ///< of the client in this situation
    const char* reported; ///< the phrase from which on the log is reported, null if it is not
};

void PrintTo(const Failure& failure, std::ostream* stream) { *stream << failure.name; }

// clang-format off
const Failure failures[] = {
    {"WrongPassword", "--password", nullptr,
     {{"username", "demo"}, {"password", stored_password("wrong")}},
     "ERRCONNECT_CONNECT_TRANSPORT_FAILED", nullptr},
    {"UnknownUser", "--password", nullptr,
     {{"username", "nobody"}, {"password", stored_password("password")}},
     "ERRCONNECT_CONNECT_TRANSPORT_FAILED", nullptr},
    {"NoUser", "--password", nullptr, {},
     "ERRCONNECT_NO_OR_MISSING_CREDENTIALS", "ERRCONNECT_NO_OR_MISSING_CREDENTIALS"},
    {"NoServerAtThePort", nullptr, nullptr,
     {{"useCustomRDPPort", "on"}, {"rdpPort", "3390"}},
     "returned a system error 32: Broken pipe", nullptr},
    {"NoWayToTheServer", nullptr, nullptr, {{"serverAddress", "10.9.9.9"}},
     "ERRCONNECT_CONNECT_FAILED", nullptr},
    {"NameThatDoesNotResolve", nullptr, nullptr, {{"serverAddress", "nowhere.invalid"}},
     "ERRCONNECT_DNS_NAME_NOT_FOUND", nullptr},
    {"NegotiationRefused", nullptr, refuse_negotiation,
     {{"useCustomRDPPort", "on"}, {"rdpPort", "PORT"}},
     "Protocol Security Negotiation Failure", "Error: protocol security"},
    {"ConnectionReset", nullptr, reset_connection,
     {{"useCustomRDPPort", "on"}, {"rdpPort", "PORT"}},
     "returned a system error 104: Connection reset by peer", "Connection reset by peer"},
    {"AuthenticationFailed", nullptr, refuse_logon(0xc0000001),
     {{"username", "demo"}, {"password", stored_password("wrong")}, {"useCustomRDPPort", "on"}, {"rdpPort", "PORT"}},
     "ERRCONNECT_AUTHENTICATION_FAILED", "ERRCONNECT_AUTHENTICATION_FAILED"},
    {"LogonFailure", nullptr, refuse_logon(0xc000006d),
     {{"username", "demo"}, {"password", stored_password("wrong")}, {"useCustomRDPPort", "on"}, {"rdpPort", "PORT"}},
     "STATUS_LOGON_FAILURE", nullptr},
    {"GatewayRefusesTheUser", nullptr, answer_with_status("401 Unauthorized"),
     {{"username", "demo"}, {"domain", "D"}, {"useRdGateway", "on"}, {"rdGatewayAddress", "127.0.0.1:PORT"},
      {"rdGatewayDomain", "GD"}, {"rdGatewayPassword", stored_password("wrong")}},
     "Protocol Security Negotiation Failure", "Error: protocol security"},
};
// clang-format on

class LongLog : public Journey {};

class FailedLaunch : public Journey, public testing::WithParamInterface<Failure> {};

/// Later fields take the place of earlier ones of the same name.
Fields merged(Fields fields, const Fields& more, const std::string& port) {
    for (auto [name, value] : more) {
        const auto place = value.find("PORT");
        if (place != std::string::npos) value.replace(place, 4, port);
        std::erase_if(fields, [&name = name](const auto& field) { return field.first == name; });
        fields.emplace_back(name, value);
    }
    return fields;
}

TEST_P(FailedLaunch, IsReportedInTheClientsWords) {
    const Failure& failure = GetParam();
    std::optional<FaultyServer> server;
    if (failure.remote != nullptr) start_remote_desktop(failure.remote);
    if (failure.server) server.emplace(failure.server);
    const unsigned id = store_record(
        merged({{"name", "desk"}, {"serverAddress", "127.0.0.1"}, {"colorDepth", "32"}},
               failure.fields, server ? server->port() : ""));

    const std::string status = status_of_failed_launch(id);

    EXPECT_NE(client_words().find(failure.words), std::string::npos) << client_words();
    EXPECT_EQ(status,
              failure.reported != nullptr ? status_from(failure.reported) : status_unknown())
        << client_words();
    EXPECT_EQ(client_windows(), std::vector<std::string>{});
}

// Deliberate: only the log's last 200 lines are looked at, and a log without a start mark there
// counts as connected. The client's usage text, which a blank in the name brings about, is longer.
TEST_F(LongLog, DeliberatelyCountsAsConnected) {
    const unsigned id = store_record({{"name", "my desk"}, {"serverAddress", "127.0.0.1"}});
    const std::string status = status_of_failed_launch(id);
    EXPECT_NE(client_words().find("Failed at index 1 [/t:my]: Invalid sigil"), std::string::npos);
    EXPECT_GT(lines_of(client_words()).size(), 200U);
    EXPECT_EQ(status, "1");
}

class SilentServer : public Journey {};

// The client gives up then, and calls that a cancelled connection too.
TEST_F(SilentServer, IsToldAsOneThatTookTooLong) {
    const FaultyServer server(fall_silent);
    store_record({{"name", "desk"},
                  {"serverAddress", "127.0.0.1"},
                  {"colorDepth", "32"},
                  {"useCustomRDPPort", "on"},
                  {"rdpPort", server.port()}});
    const std::string meaning =
        "  What it means:   The server took too long to start the session.\n";
    const Output launched = output_of(QVTC_CONTROL " launch 32 --wait 2>&1");
    EXPECT_EQ(launched.status, 4);
    EXPECT_NE(launched.text.find("failed.\n" + meaning), std::string::npos) << launched.text;
    EXPECT_NE(client_words().find("Timeout waiting for activation"), std::string::npos);
    EXPECT_NE(client_words().find("ERRCONNECT_CONNECT_CANCELLED"), std::string::npos);
    const Output status = output_of(QVTC_CONTROL " status 32");
    EXPECT_NE(status.text.find(meaning), std::string::npos) << status.text;
}

INSTANTIATE_TEST_SUITE_P(Rdp, FailedLaunch, testing::ValuesIn(failures),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace qvtc::test
