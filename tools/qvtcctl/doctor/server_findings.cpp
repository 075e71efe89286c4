#include "qvtcctl/doctor/server_findings.hpp"

#include "qvtcctl/base/text.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

using enum Health;

constexpr std::time_t day = 24L * 60 * 60;
constexpr std::time_t expires_soon = 30 * day;

bool is_rdp(const ServerRole& role) { return role.type.number == QVTC_TYPE_RDP; }

Finding name_finding(const ServerRole& role, const ServerFacts& facts) {
    const std::string host = printable(facts.address.host);
    const std::string check_it =
        fmt::format("Check {}, and the terminal's name server in /etc/resolv.conf.", role.field);
    if (facts.resolution.timed_out) {
        return {problem, "name", fmt::format("No name server answered the question for {}.", host),
                check_it};
    }
    if (facts.resolution.addresses.empty()) {
        return {problem, "name", fmt::format("The name {} is not known.", host), check_it};
    }
    if (!facts.resolution.was_name) {
        return {ok, "name", fmt::format("{} is an address.", host), ""};
    }
    return {ok, "name", fmt::format("{} is {}.", host, fmt::join(facts.resolution.addresses, ", ")),
            ""};
}

/// Where the record names no port, and the client has none of its own.
Finding no_port_finding(const ServerRole& role) {
    if (role.type.number != QVTC_TYPE_SPICE) {
        return {ok, "port", "Not tried: no port is known for this type.", ""};
    }
    return {problem, "port", "None is stored, and the viewer opens no connection without one.",
            fmt::format("Set it: \"qvtcctl connection set {} port=PORT\".", role.id)};
}

std::string place_of(const ServerFacts& facts) {
    return fmt::format("port {} of {}", facts.address.port, printable(facts.address.host));
}

Finding port_finding(const ServerRole& role, const ServerFacts& facts) {
    const std::string place = place_of(facts);
    switch (*facts.answer) {
    case PortAnswer::refused:
        return {
            problem, "port", fmt::format("Nothing listens at {}.", place),
            fmt::format("Check {} and the port, and that the server's program runs.", role.field)};
    case PortAnswer::unreachable:
        return {problem, "port", fmt::format("There is no route to {}.", place),
                "Check the terminal's network: its cable, address and gateway."};
    case PortAnswer::silent:
        return {problem, "port", fmt::format("Nothing comes back from {}.", place),
                "Check that the server is switched on, and that no firewall is in between."};
    case PortAnswer::answered:
        break;
    }
    std::string text = place + " answers.";
    text.front() = 'P';
    return {ok, "port", text, ""};
}

// ------------------------------------------------------------------ security

std::string protocols_taken(const RdpSecurity& security) {
    std::vector<std::string_view> taken;
    if (security.takes_nla) taken.emplace_back("network-level authentication");
    if (security.takes_tls) taken.emplace_back("TLS");
    if (security.takes_old_rdp) taken.emplace_back("RDP security");
    return fmt::format("The server takes {}.", fmt::join(taken, ", "));
}

Finding security_finding(const ServerFacts& facts) {
    const RdpSecurity& security = *facts.security;
    switch (security.answer) {
    case RdpSecurity::Answer::silent:
        return {warning, "security",
                fmt::format("No RDP server has answered at {} in time.", place_of(facts)),
                "Try again; a server that starts a session may be slow. Else look at the server."};
    case RdpSecurity::Answer::strange:
        return {problem, "security", fmt::format("There is no RDP server at {}.", place_of(facts)),
                "Check the port, or ask who runs the server."};
    case RdpSecurity::Answer::refused:
        return {problem, "security",
                "The server refuses every security protocol that the client offers.",
                "Ask who runs the server to switch on TLS or network-level authentication."};
    case RdpSecurity::Answer::given:
        break;
    }
    const std::string taken = protocols_taken(security);
    if (!security.asks_for_logon()) {
        return {ok, "security", taken + " The user is checked before the session begins.", ""};
    }
    const std::string asks = taken + " It asks for the logon itself, in the session's window: "
                                     "\"connected\" does not mean that the logon succeeded.";
    if (security.chosen == tls) return {ok, "security", asks, ""};
    return {warning, "security", asks + " The client fails at some servers' RDP security.",
            "Ask who runs the server to switch on TLS."};
}

// ------------------------------------------------------------------ certificate

std::string date_of(std::time_t time) { return fmt::format("{:%Y-%m-%d}", fmt::gmtime(time)); }

/// Where the client refuses, or asks the user, when a certificate is not in order.
Finding checked_certificate(const Certificate& certificate, std::time_t now) {
    const std::string subject =
        certificate.subject.empty() ? "nobody by name" : printable(certificate.subject);
    const std::string expires = date_of(certificate.expires);
    if (certificate.expires < now) {
        return {problem, "certificate",
                fmt::format("It expired on {}. Issued to {}.", expires, subject),
                "Ask who runs the server to renew it, and check the terminal's clock."};
    }
    if (certificate.begins > now) {
        return {problem, "certificate",
                fmt::format("It is not valid before {}. Issued to {}.", date_of(certificate.begins),
                            subject),
                "Check the terminal's clock, or ask who runs the server."};
    }
    if (certificate.fault != 0) {
        return {warning, "certificate",
                fmt::format("It is not trusted: {}. Issued to {}, valid until {}.",
                            printable(certificate.fault_text), subject, expires),
                "Install the certificate of the authority that issued it on the terminal's image, "
                "and use the name that it was issued for."};
    }
    if (certificate.expires < now + expires_soon) {
        const std::time_t days = (certificate.expires - now) / day;
        return {warning, "certificate",
                fmt::format("It expires in {} day{}, on {}. Issued to {}.", days,
                            days == 1 ? "" : "s", expires, subject),
                "Ask who runs the server to renew it."};
    }
    return {ok, "certificate",
            fmt::format("It is trusted, and valid until {}. Issued to {}.", expires, subject), ""};
}

Finding certificate_finding(const ServerRole& role, const ServerFacts& facts) {
    if (facts.tls_was_silent) {
        return {warning, "certificate",
                fmt::format("No TLS server has answered at {} in time.", place_of(facts)),
                "Try again. If it stays silent, check the port, or ask who runs the server."};
    }
    if (!facts.certificate) {
        std::string place = place_of(facts);
        place.front() = 'P';
        return {problem, "certificate", fmt::format("{} does not speak TLS.", place),
                "Check the port, or ask who runs the server."};
    }
    Finding finding = checked_certificate(*facts.certificate, role.now);
    if (is_rdp(role) && finding.health != ok) {
        finding.health = ok;
        finding.advice.clear();
        finding.text += " The client does not check it.";
    }
    return finding;
}

} // namespace

bool shows_certificate(const ServerFacts& facts) {
    if (!facts.security) return facts.address.tls;
    return facts.security->chosen && *facts.security->chosen != old_rdp;
}

Findings findings_on_server(const ServerRole& role, const ServerFacts& facts) {
    Findings findings{name_finding(role, facts)};
    if (facts.address.port == 0) {
        findings.push_back(no_port_finding(role));
        return findings;
    }
    if (facts.resolution.addresses.empty() || !facts.answer) return findings;
    findings.push_back(port_finding(role, facts));
    if (*facts.answer != PortAnswer::answered) return findings;
    if (facts.security) findings.push_back(security_finding(facts));
    if (shows_certificate(facts)) findings.push_back(certificate_finding(role, facts));
    return findings;
}

} // namespace qvtc::qvtcctl
