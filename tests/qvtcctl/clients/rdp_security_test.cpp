#include "qvtcctl/clients/rdp_security.hpp"

#include "journeys/faulty_server.hpp"
#include "qvtcctl/base/server_socket.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::FaultyServer;
using Answer = RdpSecurity::Answer;

RdpSecurity security_at(const FaultyServer::Behaviour& behaviour,
                        std::chrono::milliseconds longest = 5s) {
    const FaultyServer server(behaviour);
    return rdp_security_of("127.0.0.1", static_cast<unsigned>(std::stoul(server.port())), longest);
}

TEST(QvtcctlRdpSecurity, IsAskedForInNineteenBytes) {
    EXPECT_EQ(negotiation_request(offered_by_client),
              "\x03\x00\x00\x13\x0e\xe0\x00\x00\x00\x00\x00\x01\x00\x08\x00\x03\x00\x00\x00"s);
}

TEST(QvtcctlRdpSecurity, IsReadFromTheAnswer) {
    const std::string head = "\x03\x00\x00\x13\x0e\xd0\x00\x00\x12\x34\x00"s;
    EXPECT_EQ(negotiation_in(head + "\x02\x00\x08\x00\x02\x00\x00\x00"s), (Negotiation{nla, 0}));
    EXPECT_EQ(negotiation_in(head + "\x03\x00\x08\x00\x05\x00\x00\x00"s),
              (Negotiation{std::nullopt, 5}));
    EXPECT_EQ(negotiation_in("\x03\x00\x00\x0b\x06\xd0\x00\x00\x12\x34\x00"s),
              (Negotiation{old_rdp, 0}));
    for (const std::string& bytes :
         {""s, "\x03"s, "HTTP/1.1 400 Bad Request\r\n"s, head,
          head + "\x07\x00\x08\x00\x02\x00\x00\x00"s, head + "\x02\x00\x08\x00\x03\x00\x00\x00"s,
          head + "\x02\x00\x08\x00\x08\x00\x00\x00"s,
          head + "\x02\x00\x08\x00\x02\x00\x00\x00\x00"s,
          "\x03\x00\x00\x0b\x06\xe0\x00\x00\x12\x34\x00"s}) {
        EXPECT_EQ(negotiation_in(bytes), std::nullopt) << bytes;
    }
}

TEST(QvtcctlRdpSecurity, IsWhatTheServerTakesOfEachProtocol) {
    constexpr bool old = true;
    const std::pair<FaultyServer::Behaviour, RdpSecurity> cases[] = {
        {test::negotiate_security(2, false), {Answer::given, nla, false, false, true}},
        {test::negotiate_security(3, old), {Answer::given, nla, true, true, true}},
        {test::negotiate_security(1, false), {Answer::given, tls, false, true, false}},
        {test::negotiate_security(0, old), {Answer::given, old_rdp, true, false, false}},
        {test::negotiate_security(0, false), {Answer::refused, std::nullopt, false, false, false}},
    };
    for (const auto& [behaviour, security] : cases) EXPECT_EQ(security_at(behaviour), security);
    EXPECT_FALSE(cases[1].second.asks_for_logon());
    EXPECT_TRUE(cases[2].second.asks_for_logon());
    EXPECT_TRUE(cases[3].second.asks_for_logon());
    EXPECT_FALSE(cases[4].second.asks_for_logon());
}

TEST(QvtcctlRdpSecurity, IsNotKnownOfWhatIsNoRdpServer) {
    const RdpSecurity strange{Answer::strange, std::nullopt, false, false, false};
    EXPECT_EQ(security_at([](int) {}), strange);
    EXPECT_EQ(security_at([](int socket) {
                  const std::string answer = "HTTP/1.1 400 Bad Request\r\n\r\n";
                  (void)!write(socket, answer.data(), answer.size());
              }),
              strange);
    EXPECT_EQ(security_at(
                  [](int socket) {
                      char byte = 0;
                      while (read(socket, &byte, 1) > 0) continue;
                  },
                  300ms)
                  .answer,
              Answer::silent);
}

} // namespace
} // namespace qvtc::qvtcctl
