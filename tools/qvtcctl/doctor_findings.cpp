#include "qvtcctl/doctor_findings.hpp"

#include "qvtcctl/advice.hpp"
#include "qvtcctl/password.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/validation.hpp"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

using Findings = std::vector<Finding>;
using enum Health;

constexpr std::time_t day = 24L * 60 * 60;
constexpr std::time_t expires_soon = 30 * day;

bool is_on(const Record& record, std::string_view field) {
    const auto place = find_field(field);
    return place && record[*place] == "on";
}

// ------------------------------------------------------------------ the record

Finding settings_finding(const ConnectionType& type, unsigned id, const Record& record) {
    try {
        require_usable(type, record);
    } catch (const Refusal& refusal) {
        return {problem, "settings", printable(refusal.what()),
                fmt::format("Set it: \"qvtcctl connection set {} FIELD=VALUE\".", id)};
    }
    if (record.address().size() < shortest_address) {
        return {problem, "settings",
                fmt::format("serverAddress has fewer than {} characters, which the library takes "
                            "for none.",
                            shortest_address),
                fmt::format("Set it: \"qvtcctl connection set {} serverAddress=ADDRESS\".", id)};
    }
    return {ok, "settings", "The client gets all that it needs.", ""};
}

/// What is stored and has no effect, of the fields that people take for ones that have.
void add_advice(Findings& findings, const ConnectionType& type, unsigned id, const Record& record) {
    const std::vector<std::size_t> fields{field_index("port"),
                                          field_index("rdpPort"),
                                          field_index("appFullpath"),
                                          field_index("useRdGateway"),
                                          field_index("rdGatewayUsername"),
                                          field_index("rdGatewayPassword")};
    for (const std::string& sentence : advice_on(type, record, fields)) {
        findings.push_back({warning, "settings", sentence,
                            fmt::format("Look at it: \"qvtcctl connection show {}\".", id)});
    }
}

Finding vnc_password_finding(unsigned id) {
    return {problem, "password",
            "The viewer takes a stored password for the beginning of the address.",
            fmt::format("Remove it: \"qvtcctl connection set {} password=\".", id)};
}

Finding password_finding(const ConnectionType& type, unsigned id, const Record& record,
                         std::string_view field, std::string_view option) {
    const std::string& stored = record[*find_field(field)];
    if (stored.empty()) {
        const bool asked = !record[field_index("username")].empty();
        if (!asked) return {ok, "password", "None is stored, and no user name.", ""};
        return {warning, "password", "A user name is stored, and no password for it.",
                fmt::format("Store it: \"qvtcctl connection set {} {}\".", id, option)};
    }
    if (!readable_password(type, stored)) {
        // The library asks for no more of base64 than its length.
        const bool refused = stored.size() % 4 != 0;
        return {problem, "password",
                fmt::format("The stored {} cannot be decoded; the client would {}.", field,
                            refused ? "not be started" : "be given another one"),
                fmt::format("Store it again: \"qvtcctl connection set {} {}\".", id, option)};
    }
    return {ok, "password", fmt::format("The stored {} can be decoded.", field), ""};
}

void add_passwords(Findings& findings, const ConnectionType& type, unsigned id,
                   const Record& record) {
    const Field& field = fields[field_index("password")];
    if (!contains(field.used_by, type)) return;
    if (type.number == QVTC_TYPE_VNC) {
        if (!record[field_index("password")].empty()) findings.push_back(vnc_password_finding(id));
        return;
    }
    findings.push_back(password_finding(type, id, record, "password", "--password"));
    if (type.number == QVTC_TYPE_RDP && !record[field_index("rdGatewayPassword")].empty()) {
        findings.push_back(
            password_finding(type, id, record, "rdGatewayPassword", "--gateway-password"));
    }
}

// ------------------------------------------------------------------ the server

Finding name_finding(const ServerFacts& facts, std::string_view field) {
    const std::string host = printable(facts.address.host);
    const std::string check_it =
        fmt::format("Check {}, and the terminal's name server in /etc/resolv.conf.", field);
    if (facts.resolution.timed_out) {
        return {problem, "name", fmt::format("No name server answers, asked for {}.", host),
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

Finding port_finding(const ServerFacts& facts, std::string_view field) {
    const std::string place =
        fmt::format("port {} of {}", facts.address.port, printable(facts.address.host));
    switch (*facts.answer) {
    case PortAnswer::refused:
        return {problem, "port", fmt::format("Nothing listens at {}.", place),
                fmt::format("Check {} and the port, and that the server's program runs.", field)};
    case PortAnswer::unreachable:
        return {problem, "port", fmt::format("There is no way to {}.", place),
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

std::string until(const Certificate& certificate) {
    return certificate.expires.empty() ? "" : ", valid until " + printable(certificate.expires);
}

Finding certificate_finding(const ServerFacts& facts, std::time_t now) {
    if (!facts.certificate) {
        return {problem, "certificate",
                fmt::format("Port {} of {} does not speak TLS.", facts.address.port,
                            printable(facts.address.host)),
                "Check the port, or ask who runs the server."};
    }
    const Certificate& certificate = *facts.certificate;
    const std::string subject = printable(certificate.subject);
    if (certificate.expires_at && *certificate.expires_at < now) {
        return {problem, "certificate",
                fmt::format("That of {} has expired: {}.", subject, printable(certificate.expires)),
                "Ask who runs the server to renew it, and check the terminal's clock."};
    }
    if (certificate.fault != 0) {
        return {warning, "certificate",
                fmt::format("That of {}{} is not trusted: {}.", subject, until(certificate),
                            printable(certificate.fault_text)),
                "Install the certificate of the authority that issued it on the terminal's image, "
                "and use the name that it was issued for."};
    }
    if (certificate.expires_at && *certificate.expires_at < now + expires_soon) {
        return {warning, "certificate",
                fmt::format("That of {} expires in {} days: {}.", subject,
                            (*certificate.expires_at - now) / day, printable(certificate.expires)),
                "Ask who runs the server to renew it."};
    }
    return {ok, "certificate", fmt::format("That of {}{}.", subject, until(certificate)), ""};
}

void add_server(Findings& findings, const ServerFacts& facts, std::string_view field,
                std::time_t now) {
    findings.push_back(name_finding(facts, field));
    if (facts.resolution.addresses.empty()) return;
    if (!facts.answer) {
        findings.push_back({ok, "port", "Not tried: no port is known for this type.", ""});
        return;
    }
    findings.push_back(port_finding(facts, field));
    if (!facts.address.tls || *facts.answer != PortAnswer::answered) return;
    if (facts.certificate_looked_for) {
        findings.push_back(certificate_finding(facts, now));
    } else {
        findings.push_back({ok, "certificate", "Not looked at: openssl is not installed.", ""});
    }
}

// ------------------------------------------------------------------ the terminal

Finding client_finding(const ConnectionType& type, const DoctorFacts& facts) {
    if (!can_be_launched(type)) {
        return {ok, "client", "The terminal's front-end starts its client.", ""};
    }
    if (facts.client_installed) {
        return {ok, "client", fmt::format("{} is installed.", type.process), ""};
    }
    return {problem, "client", fmt::format("{} is not installed.", type.process),
            "Install it on the terminal's image."};
}

Finding screen_finding(const DoctorFacts& facts) {
    if (facts.screen_answers) return {ok, "screen", "Display :0 answers.", ""};
    return {problem, "screen", "Display :0 could not be asked for its windows.",
            "Check that the X server runs, and that xwininfo is installed."};
}

Finding sound_finding(const ConnectionType& type, const Record& record, const DoctorFacts& facts) {
    if (facts.sound_runs) return {ok, "sound", "PulseAudio runs.", ""};
    if (type.number == QVTC_TYPE_RDP && is_on(record, "redirectAudio")) {
        return {warning, "sound",
                "PulseAudio does not run; unless the launch can start it, there is no sound.",
                "Start it: \"qvplugin 0 96\"."};
    }
    return {ok, "sound", "PulseAudio does not run; this connection does not ask for it.", ""};
}

void add_markers(Findings& findings, const ConnectionType& type, const Record& record,
                 const DoctorFacts& facts) {
    const std::size_t before = findings.size();
    for (const MarkerFile& marker : marker_files) {
        if (!contains(marker.types, type) || !facts.markers.contains(marker.path)) continue;
        const bool contradicted =
            is_on(record, marker.contradicts) || is_on(record, marker.contradicts2);
        findings.push_back({contradicted ? warning : ok, "marker file",
                            fmt::format("{} is there. {}", marker.path, marker.effect),
                            contradicted ? fmt::format("The connection asks for the contrary. "
                                                       "Remove the file if that is to hold.")
                                         : ""});
    }
    if (findings.size() == before) {
        findings.push_back({ok, "marker file", "None that would change this connection.", ""});
    }
}

} // namespace

std::string_view name_of(Health health) {
    switch (health) {
    case ok:
        return "ok";
    case warning:
        return "warning";
    case problem:
        return "problem";
    }
    return "";
}

std::vector<Finding> findings_on(const ConnectionType& type, unsigned id, const Record& record,
                                 const DoctorFacts& facts) {
    Findings findings;
    findings.push_back(settings_finding(type, id, record));
    add_advice(findings, type, id, record);
    add_passwords(findings, type, id, record);
    if (facts.gateway) add_server(findings, *facts.gateway, "rdGatewayAddress", facts.now);
    if (facts.server) {
        add_server(findings, *facts.server, "serverAddress", facts.now);
    } else if (!record.address().empty()) {
        findings.push_back({ok, "name", "The address names no server.", ""});
    }
    findings.push_back(client_finding(type, facts));
    if (!can_be_launched(type)) return findings;
    findings.push_back(screen_finding(facts));
    findings.push_back(sound_finding(type, record, facts));
    add_markers(findings, type, record, facts);
    return findings;
}

Health worst_of(const std::vector<Finding>& findings) {
    Health worst = ok;
    for (const Finding& finding : findings) worst = std::max(worst, finding.health);
    return worst;
}

} // namespace qvtc::qvtcctl
