#include "qvtcctl/certificate.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;

constexpr const char* self_signed =
    "CONNECTED(00000003)\n"
    "---\n"
    "Certificate chain\n"
    " 0 s:CN = view.lan\n"
    "   i:CN = The authority\n"
    "   a:PKEY: rsaEncryption, 2048 (bit); sigalg: RSA-SHA256\n"
    "   v:NotBefore: Nov 21 18:08:36 2026 GMT; NotAfter: Dec  1 18:08:36 2026 GMT\n"
    " 1 s:CN = The authority\n"
    "   v:NotBefore: Jan  1 00:00:00 2020 GMT; NotAfter: Jan  1 00:00:00 2040 GMT\n"
    "---\n"
    "Server certificate\n"
    "-----BEGIN CERTIFICATE-----\nMIIB\n-----END CERTIFICATE-----\n"
    "subject=CN = view.lan\n"
    "issuer=CN = The authority\n"
    "---\n"
    "Verify return code: 18 (self-signed certificate)\n"
    "---\n";

TEST(QvtcctlCertificate, IsReadFromWhatOpensslPrints) {
    const auto certificate = certificate_in(self_signed);
    ASSERT_TRUE(certificate);
    EXPECT_EQ(certificate->subject, "CN = view.lan");
    EXPECT_EQ(certificate->expires, "Dec  1 18:08:36 2026 GMT");
    EXPECT_EQ(certificate->expires_at, std::time_t{1796148516});
    EXPECT_EQ(certificate->fault, 18);
    EXPECT_EQ(certificate->fault_text, "self-signed certificate");
}

TEST(QvtcctlCertificate, MayBeInOrder) {
    const auto certificate = certificate_in("-----BEGIN CERTIFICATE-----\nsubject=CN = h\n"
                                            "Verify return code: 0 (ok)\n");
    ASSERT_TRUE(certificate);
    EXPECT_EQ(certificate->fault, 0);
    EXPECT_EQ(certificate->fault_text, "");
    EXPECT_EQ(certificate->expires_at, std::nullopt);
}

TEST(QvtcctlCertificate, MayNotBeThere) {
    EXPECT_EQ(certificate_in(""), std::nullopt);
    EXPECT_EQ(certificate_in("no peer certificate available\nVerify return code: 0 (ok)\n"),
              std::nullopt);
}

TEST(QvtcctlCertificate, OfAStrangeKindIsReadAsFarAsItGoes) {
    for (const char* const text :
         {"-----BEGIN CERTIFICATE-----", "-----BEGIN CERTIFICATE-----\nsubject=",
          "-----BEGIN CERTIFICATE-----NotAfter: Verify return code: ",
          "-----BEGIN CERTIFICATE-----NotAfter: Foo 99\nVerify return code: x (y",
          "-----BEGIN CERTIFICATE-----\nVerify return code: 99999999999 ()\n"}) {
        const auto certificate = certificate_in(text);
        ASSERT_TRUE(certificate) << text;
        EXPECT_EQ(certificate->fault, 0) << text;
        EXPECT_EQ(certificate->expires_at, std::nullopt) << text;
    }
}

TEST(QvtcctlCertificate, IsFetchedForANameOrAnAddress) {
    StandIn openssl("openssl");
    openssl.prints(self_signed);
    EXPECT_TRUE(certificate_of({"view.lan", 443, true}));
    EXPECT_TRUE(certificate_of({"10.0.0.9", 8443, true}));
    EXPECT_TRUE(certificate_of({"fd00::9", 443, true}));
    EXPECT_EQ(
        openssl.calls(),
        (StandIn::Calls{
            {"s_client", "-connect", "view.lan:443", "-servername", "view.lan", "-verify_hostname",
             "view.lan"},
            {"s_client", "-connect", "10.0.0.9:8443", "-noservername", "-verify_ip", "10.0.0.9"},
            {"s_client", "-connect", "[fd00::9]:443", "-noservername", "-verify_ip", "fd00::9"}}));
}

TEST(QvtcctlCertificate, ThatDoesNotComeIsNotWaitedFor) {
    StandIn openssl("openssl");
    openssl.keeps_running();
    EXPECT_EQ(certificate_of({"view.lan", 443, true}), std::nullopt);
}

} // namespace
} // namespace qvtc::qvtcctl
