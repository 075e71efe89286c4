#include "qvtcctl/connections/advice.hpp"

#include "qvtcctl/connections/assignments.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using Words = std::vector<std::string>;

/// The advice on a new record of that type with these values, all of them just named.
Words advice(std::string_view type, const Words& words) {
    Record record;
    std::vector<std::size_t> named;
    for (const Assignment& assignment : parse_assignments(words)) {
        record[assignment.field] = assignment.value;
        named.push_back(assignment.field);
    }
    return advice_on(*find_type(type), record, named);
}

TEST(QvtcctlAdvice, NothingIsSaidAboutWhatWorks) {
    EXPECT_EQ(advice("rdp", {"name=a", "serverAddress=10.0.0.5", "username=u", "domain=d"}),
              Words{});
    EXPECT_EQ(advice("rdp", {"rdpPort=3390", "useCustomRDPPort=on"}), Words{});
    EXPECT_EQ(advice("rdp", {"autoConnect=on"}), Words{});
    EXPECT_EQ(advice("rdp", {"port="}), Words{});
    EXPECT_EQ(advice("spice", {"serverAddress=10.0.0.7", "port=5900"}), Words{});
    EXPECT_EQ(advice("spice", {"serverAddress=10.0.0.7?tls-port=5901"}), Words{});
    EXPECT_EQ(advice("citrix", {"port=5900", "useGFX=on"}), Words{});
}

TEST(QvtcctlAdvice, AFieldThatTheClientDoesNotGetIsNamed) {
    EXPECT_EQ(advice("web", {"useGFX=on"}),
              Words{"useGFX is stored, but the web client does not get it."});
    EXPECT_EQ(advice("rdp", {"port=3390"}),
              Words{"port is stored, but the RDP client does not get it: use rdpPort with "
                    "useCustomRDPPort=on."});
    EXPECT_EQ(advice("vnc", {"port=5901"}),
              Words{"port is stored, but the VNC client does not get it: write "
                    "serverAddress=ADDRESS::PORT."});
}

TEST(QvtcctlAdvice, SwitchesThatAreMissingAreNamed) {
    EXPECT_EQ(advice("rdp", {"rdpPort=3390"}),
              Words{"rdpPort is used only with useCustomRDPPort=on."});
    EXPECT_EQ(advice("rdp", {"appFullpath=calc.exe", "isConnectStart=off"}),
              Words{"appFullpath is used only with isConnectStart=on."});
    EXPECT_EQ(advice("rdp", {"useRdGateway=on", "rdGatewayAddress=gw.example"}),
              Words{"The gateway is used only when domain is set too."});
    EXPECT_EQ(advice("rdp", {"useRdGateway=on", "domain=d"}),
              Words{"useRdGateway is on, but there is no rdGatewayAddress."});
    EXPECT_EQ(advice("rdp", {"username=u", "rdGatewayUsername=g"}),
              Words{"rdGatewayUsername takes the place of username when the client logs on."});
}

TEST(QvtcctlAdvice, ASpiceConnectionNeedsAPort) {
    const Words told{"The viewer opens no connection without a port: set port too."};
    EXPECT_EQ(advice("spice", {"serverAddress=10.0.0.7"}), told);
    EXPECT_EQ(advice("spice", {"serverAddress=10.0.0.7", "port="}), told);
}

TEST(QvtcctlAdvice, IsGivenOnlyToWhoNamedTheField) {
    Record record;
    record[field_index("rdpPort")] = "3390";
    EXPECT_EQ(advice_on(*find_type("rdp"), record, {field_index("name")}), Words{});
}

TEST(QvtcctlAdvice, AVncPasswordGetsInTheWay) {
    EXPECT_EQ(advice("vnc", {"serverAddress=10.0.0.7"}), Words{});
    Record record;
    record[field_index("password")] = "secret";
    EXPECT_EQ(advice_on(*find_type("vnc"), record, {field_index("password")}),
              Words{"The viewer takes a stored password for the beginning of the address, and "
                    "finds no server."});
}

} // namespace
} // namespace qvtc::qvtcctl
