#include "qvtcctl/doctor/certificate.hpp"

#include "journeys/faulty_server.hpp"
#include "qvtcctl/base/server_socket.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;
using test::FaultyServer;
using test::ShownCertificate;

std::optional<Certificate> certificate_at(const FaultyServer& server, const std::string& host,
                                          std::chrono::milliseconds longest = 5s) {
    ServerSocket socket("127.0.0.1", static_cast<unsigned>(std::stoul(server.port())), longest);
    return certificate_of(socket, host);
}

std::optional<Certificate> certificate_of_server(const ShownCertificate& shown,
                                                 const std::string& host = "127.0.0.1") {
    const FaultyServer server(test::show_certificate(shown));
    return certificate_at(server, host);
}

// As seconds since 1970.
constexpr std::time_t begin_of_2020 = 1577836800;
constexpr std::time_t end_of_2029 = 1893455999;

TEST(QvtcctlCertificate, IsReadAndVerified) {
    EXPECT_EQ(certificate_of_server({"view.lan",
                                     "B\xc3\xbc"
                                     "cher",
                                     "20200101000000Z", "20291231235959Z"},
                                    "view.lan"),
              (Certificate{"O = B\xc3\xbc"
                           "cher, CN = view.lan",
                           begin_of_2020, end_of_2029, 18, "self-signed certificate"}));
}

// A server writes its own names: they are never taken for the verdict on them.
TEST(QvtcctlCertificate, ThatCallsItselfTrustedIsNot) {
    EXPECT_EQ(certificate_of_server(
                  {"Verify return code: 0 (ok)", "", "20200101000000Z", "20291231235959Z"})
                  ->fault,
              18);
    const auto expired = certificate_of_server(
        {"localhost", "NotAfter: Jan  1 00:00:00 2099 GMT Verify return code: 0 (ok)",
         "20150101000000Z", "20191231235959Z"},
        "localhost");
    ASSERT_TRUE(expired);
    EXPECT_EQ(expired->expires, begin_of_2020 - 1);
    EXPECT_NE(expired->fault, 0);
}

TEST(QvtcctlCertificate, IsNotThereWithoutTls) {
    const FaultyServer web([](int socket) {
        const std::string answer = "HTTP/1.1 400 Bad Request\r\n\r\n";
        (void)!write(socket, answer.data(), answer.size());
    });
    EXPECT_EQ(certificate_at(web, "localhost"), std::nullopt);
    const FaultyServer mute([](int) {});
    EXPECT_EQ(certificate_at(mute, "localhost"), std::nullopt);
}

TEST(QvtcctlCertificate, ThatDoesNotComeIsNotWaitedFor) {
    const FaultyServer silent(test::say_nothing);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(certificate_at(silent, "localhost", 300ms), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

} // namespace
} // namespace qvtc::qvtcctl
