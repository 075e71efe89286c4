#include "qvtcctl/connections/server_address.hpp"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

// For the messages of the tests.
static void PrintTo(const ServerAddress& server, std::ostream* stream) {
    *stream << server.host << " at " << server.port << (server.tls ? ", TLS" : "");
}

namespace {

using Values = std::vector<std::pair<std::string_view, std::string>>;

Record record_of(const Values& values) {
    Record record;
    for (const auto& [field, value] : values) record[*find_field(field)] = value;
    return record;
}

std::optional<ServerAddress> server(std::string_view type, const Values& values) {
    return server_of(*find_type(type), record_of(values));
}

TEST(QvtcctlServerAddress, IsReadAsTheClientReadsIt) {
    struct Case {
        std::string_view type;
        Values values;
        std::optional<ServerAddress> server;
    };
    const Case cases[] = {
        {"rdp", {{"serverAddress", "10.0.0.5"}}, {{"10.0.0.5", 3389}}},
        {"rdp", {{"serverAddress", "office.lan:3390"}}, {{"office.lan", 3390}}},
        {"rdp", {{"serverAddress", "h.lan"}, {"rdpPort", "3391"}}, {{"h.lan", 3389}}},
        {"rdp",
         {{"serverAddress", "h.lan:1"}, {"rdpPort", "3391"}, {"useCustomRDPPort", "on"}},
         {{"h.lan", 3391}}},
        {"rdp", {{"serverAddress", "h.lan"}, {"useCustomRDPPort", "on"}}, {{"h.lan", 3389}}},
        {"rdp", {{"serverAddress", "fd00::5"}}, {{"fd00::5", 3389}}},
        {"rdp", {{"serverAddress", "[fd00::5]:3390"}}, {{"fd00::5", 3390}}},
        {"rdp", {{"serverAddress", "[fd00::5"}}, {{"fd00::5", 3389}}},
        {"rdp", {{"serverAddress", "h.lan:x"}}, {{"h.lan", 3389}}},
        {"rdp", {{"serverAddress", "h.lan:70000"}}, {{"h.lan", 3389}}},
        {"spice", {{"serverAddress", "10.0.0.7"}, {"port", "5930"}}, {{"10.0.0.7", 5930}}},
        {"spice", {{"serverAddress", "10.0.0.7"}}, {{"10.0.0.7", 0}}},
        {"spice",
         {{"serverAddress", "10.0.0.7"}, {"port", "5931?password=x"}},
         {{"10.0.0.7", 5931}}},
        {"spice", {{"serverAddress", "10.0.0.7?tls-port=5932"}}, {{"10.0.0.7", 5932, true}}},
        {"spice", {{"serverAddress", "10.0.0.7?tls-port=x"}}, {{"10.0.0.7", 0}}},
        {"vnc", {{"serverAddress", "10.0.0.5"}}, {{"10.0.0.5", 5900}}},
        {"vnc", {{"serverAddress", "10.0.0.5::5901"}}, {{"10.0.0.5", 5901}}},
        {"vnc", {{"serverAddress", "10.0.0.5:1"}}, {{"10.0.0.5", 5901}}},
        {"vnc", {{"serverAddress", "10.0.0.5:0"}}, {{"10.0.0.5", 5900}}},
        {"vnc", {{"serverAddress", "10.0.0.5:5902"}}, {{"10.0.0.5", 5902}}},
        {"vnc", {{"serverAddress", "fd00:1:2::5"}}, {{"fd00:1:2::5", 5900}}},
        {"web", {{"serverAddress", "http://h.lan/a:b?c=d"}}, {{"h.lan", 80}}},
        {"web", {{"serverAddress", "https://u:p@h.lan/"}}, {{"h.lan", 443, true}}},
        {"web", {{"serverAddress", "https://h.lan:8443"}}, {{"h.lan", 8443, true}}},
        {"web", {{"serverAddress", "h.lan:8080/x"}}, {{"h.lan", 8080}}},
        {"web", {{"serverAddress", "file:///usr/share/a.html"}}, std::nullopt},
        {"web", {{"serverAddress", "about:blank"}}, std::nullopt},
        {"horizon", {{"serverAddress", "view.lan"}}, {{"view.lan", 443, true}}},
        {"horizon", {{"serverAddress", "https://view.lan:8443/x"}}, {{"view.lan", 8443, true}}},
        {"horizon", {{"serverAddress", "http://view.lan"}}, {{"view.lan", 80}}},
        {"broker", {{"serverAddress", "10.0.0.1"}}, {{"10.0.0.1", 443, true}}},
        {"citrix", {{"serverAddress", "c.lan"}}, {{"c.lan", 443, true}}},
        {"ovirt", {{"serverAddress", "o.lan"}}, {{"o.lan", 443, true}}},
        {"hdp", {{"serverAddress", "d.lan"}}, {{"d.lan", 0}}},
        {"rdp", {}, std::nullopt},
        {"web", {{"serverAddress", ""}}, std::nullopt},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(server(each.type, each.values), each.server)
            << each.type << ' ' << testing::PrintToString(each.values);
    }
}

TEST(QvtcctlServerAddress, AGatewayIsOneOnlyWithADomain) {
    const ConnectionType& rdp = *find_type("rdp");
    Values values{{"serverAddress", "h.lan"}, {"rdGatewayAddress", "gate.lan:8443"}};
    EXPECT_EQ(gateway_of(rdp, record_of(values)), std::nullopt);
    values.emplace_back("useRdGateway", "on");
    EXPECT_EQ(gateway_of(rdp, record_of(values)), std::nullopt);
    values.emplace_back("domain", "D");
    EXPECT_EQ(gateway_of(rdp, record_of(values)), (ServerAddress{"gate.lan", 8443, true}));
    EXPECT_EQ(gateway_of(*find_type("vnc"), record_of(values)), std::nullopt);
    values[1].second = "";
    EXPECT_EQ(gateway_of(rdp, record_of(values)), std::nullopt);
}

TEST(QvtcctlServerAddress, HostileTextsAreReadToTheirEnd) {
    const std::string texts[] = {"[",
                                 "]",
                                 ":",
                                 "::",
                                 ":::",
                                 "[]:",
                                 "[:",
                                 "@",
                                 "://",
                                 "?",
                                 "#",
                                 "/",
                                 "a@",
                                 "@:1",
                                 "tls-port=",
                                 "[x]y",
                                 "\xff",
                                 "\n",
                                 "a:b:c",
                                 "a::",
                                 "::5901",
                                 std::string(100000, ':'),
                                 std::string(100000, '[')};
    for (const ConnectionType& type : connection_types) {
        for (const std::string& text : texts) {
            const Record record = record_of({{"serverAddress", text}, {"port", text}});
            const std::optional<ServerAddress> read = server_of(type, record);
            if (read) {
                EXPECT_LE(read->port, 65535U) << type.name << ' ' << text.substr(0, 20);
            }
        }
    }
}

} // namespace
} // namespace qvtc::qvtcctl
