#include "qvtcctl/doctor/server_findings.hpp"

#include "healthy_server.hpp"

#include <utility>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using Told = std::vector<std::string>;

Findings findings(std::string_view type, const ServerFacts& facts) {
    return findings_on_server({*find_type(type), 33, "serverAddress", now}, facts);
}

/// What was found of one thing, as "problem: text", when the healthy server is changed.
template <typename Change>
Told told_when(std::string_view check, std::string_view type, ServerFacts facts, Change change) {
    change(facts);
    Told told;
    for (const Finding& finding : findings(type, facts)) {
        EXPECT_TRUE(finding.text.ends_with('.')) << finding.text;
        EXPECT_EQ(finding.advice.empty(), finding.health == Health::ok) << finding.text;
        if (finding.check != check) continue;
        told.push_back(std::string(name_of(finding.health)) + ": " + finding.text);
    }
    return told;
}

TEST(QvtcctlServerFindings, OfTheNameSayWhatItIs) {
    const auto name = [](const HostAddresses& resolution) {
        return told_when("name", "rdp", healthy_server({"h.lan", 3389}),
                         [&](ServerFacts& facts) { facts.resolution = resolution; });
    };
    EXPECT_EQ(name({{"10.0.0.5"}, false, false}), Told{"ok: h.lan is an address."});
    EXPECT_EQ(name({{"10.0.0.5", "10.0.0.6"}, true, false}),
              Told{"ok: h.lan is 10.0.0.5, 10.0.0.6."});
    EXPECT_EQ(name({{}, true, false}), Told{"problem: The name h.lan is not known."});
    EXPECT_EQ(name({{}, true, true}),
              Told{"problem: No name server answered the question for h.lan."});
    // What could not be asked is not told.
    EXPECT_EQ(told_when("port", "rdp", healthy_server({"h.lan", 3389}),
                        [](ServerFacts& facts) { facts.resolution.addresses.clear(); }),
              Told{});
}

TEST(QvtcctlServerFindings, OfThePortSayWhoAnswers) {
    const std::pair<PortAnswer, const char*> cases[] = {
        {PortAnswer::answered, "ok: Port 3389 of 10.0.0.5 answers."},
        {PortAnswer::refused, "problem: Nothing listens at port 3389 of 10.0.0.5."},
        {PortAnswer::unreachable, "problem: There is no route to port 3389 of 10.0.0.5."},
        {PortAnswer::silent, "problem: Nothing comes back from port 3389 of 10.0.0.5."},
    };
    for (const auto& [answer, told] : cases) {
        EXPECT_EQ(told_when("port", "rdp", healthy_server({"10.0.0.5", 3389}),
                            [answer = answer](ServerFacts& facts) { facts.answer = answer; }),
                  Told{told});
    }
    const auto nothing = [](ServerFacts&) {};
    EXPECT_EQ(told_when("port", "hdp", healthy_server({"10.0.0.5", 0}), nothing),
              Told{"ok: Not tried: no port is known for this type."});
    EXPECT_EQ(told_when("port", "spice", healthy_server({"10.0.0.5", 0}), nothing),
              Told{"problem: None is stored, and the viewer opens no connection without one."});
}

TEST(QvtcctlServerFindings, OfTheSecuritySayWhoAsksForTheLogon) {
    using Answer = RdpSecurity::Answer;
    const auto security = [](const RdpSecurity& given) {
        return told_when("security", "rdp", healthy_server({"10.0.0.5", 3389}),
                         [&](ServerFacts& facts) { facts.security = given; });
    };
    EXPECT_EQ(security({Answer::given, nla, false, true, true}),
              Told{"ok: The server takes network-level authentication, TLS. The user is checked "
                   "before the session begins."});
    EXPECT_EQ(security({Answer::given, tls, true, true, false}),
              Told{"ok: The server takes TLS, RDP security. It asks for the logon itself, in the "
                   "session's window: \"connected\" does not mean that the logon succeeded."});
    EXPECT_EQ(security({Answer::given, old_rdp, true, false, false}),
              Told{"warning: The server takes RDP security. It asks for the logon itself, in the "
                   "session's window: \"connected\" does not mean that the logon succeeded. The "
                   "client fails at some servers' RDP security."});
    EXPECT_EQ(security({Answer::refused, {}, false, false, false}),
              Told{"problem: The server refuses every security protocol that the client offers."});
    EXPECT_EQ(security({Answer::strange, {}, false, false, false}),
              Told{"problem: There is no RDP server at port 3389 of 10.0.0.5."});
    EXPECT_EQ(security({Answer::silent, {}, false, false, false}),
              Told{"warning: No RDP server has answered at port 3389 of 10.0.0.5 in time."});
}

TEST(QvtcctlServerFindings, OfTheCertificateSayHowGoodItIs) {
    const auto certificate = [&](auto change) {
        return told_when("certificate", "web", healthy_server({"h.lan", 443, true}), change);
    };
    EXPECT_EQ(certificate([](ServerFacts&) {}),
              Told{"ok: It is trusted, and valid until 2029-05-06. Issued to CN = h."});
    EXPECT_EQ(certificate([](ServerFacts& facts) {
                  facts.certificate->expires = now - day;
                  facts.certificate->fault = 18; // it is not the worst of it
              }),
              Told{"problem: It expired on 2026-11-17. Issued to CN = h."});
    EXPECT_EQ(certificate([](ServerFacts& facts) { facts.certificate->begins = now + day; }),
              Told{"problem: It is not valid before 2026-11-19. Issued to CN = h."});
    EXPECT_EQ(certificate([](ServerFacts& facts) { facts.certificate->expires = now + 5 * day; }),
              Told{"warning: It expires in 5 days, on 2026-11-23. Issued to CN = h."});
    EXPECT_EQ(certificate([](ServerFacts& facts) {
                  facts.certificate->fault = 18;
                  facts.certificate->fault_text = "self-signed certificate";
              }),
              Told{"warning: It is not trusted: self-signed certificate. Issued to CN = h, valid "
                   "until 2029-05-06."});
    EXPECT_EQ(certificate([](ServerFacts& facts) { facts.certificate.reset(); }),
              Told{"problem: Port 443 of h.lan does not speak TLS."});
    EXPECT_EQ(certificate([](ServerFacts& facts) {
                  facts.certificate.reset();
                  facts.tls_was_silent = true;
              }),
              Told{"warning: No TLS server has answered at port 443 of h.lan in time."});
    EXPECT_EQ(certificate([](ServerFacts& facts) { facts.answer = PortAnswer::refused; }), Told{});
}

// Its command line has /cert-ignore, for the server's and for a gateway's.
TEST(QvtcctlServerFindings, OfACertificateAreNoWarningsWhereTheClientDoesNotCheckIt) {
    const auto spoil = [](ServerFacts& facts) {
        facts.certificate->fault = 18;
        facts.certificate->fault_text = "self-signed certificate";
    };
    EXPECT_EQ(told_when("certificate", "rdp", healthy_server({"10.0.0.9", 443, true}), spoil),
              Told{"ok: It is not trusted: self-signed certificate. Issued to CN = h, valid until "
                   "2029-05-06. The client does not check it."});
    EXPECT_EQ(
        told_when("certificate", "rdp", healthy_server({"10.0.0.9", 443, true}),
                  [](ServerFacts& facts) { facts.certificate->expires = now - day; }),
        Told{"ok: It expired on 2026-11-17. Issued to CN = h. The client does not check it."});
    // Only a server that has chosen TLS shows one.
    const auto choose = [&](std::uint32_t protocol) {
        ServerFacts facts = healthy_server({"10.0.0.5", 3389});
        facts.security = RdpSecurity{RdpSecurity::Answer::given, protocol, true, true, true};
        facts.certificate = Certificate{"CN = h", now - day, now + 900 * day, 0, ""};
        return told_when("certificate", "rdp", facts, [](ServerFacts&) {}).size();
    };
    EXPECT_EQ(choose(nla), 1U);
    EXPECT_EQ(choose(tls), 1U);
    EXPECT_EQ(choose(old_rdp), 0U);
}

TEST(QvtcctlServerFindings, ShowHostileTextsWithoutTheirControlCharacters) {
    ServerFacts facts = healthy_server({"\x1b[2Jh", 443, true});
    facts.certificate = Certificate{"CN = \x1b[2J", now - day, now + 900 * day, 18, "\x1b"};
    for (const Finding& finding : findings("web", facts)) {
        EXPECT_EQ(finding.text.find_first_of("\x1b\x07"), std::string::npos) << finding.text;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
