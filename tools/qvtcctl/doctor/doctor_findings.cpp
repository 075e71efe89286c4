#include "qvtcctl/doctor/doctor_findings.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/advice.hpp"
#include "qvtcctl/connections/password.hpp"
#include "qvtcctl/connections/validation.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using enum Health;

bool is_on(const Record& record, std::string_view field) {
    const auto place = find_field(field);
    return place && record[*place] == "on";
}

/// A whole document is no finding: what is stored in it is looked at below.
void add_document(Findings& findings, const DoctorFacts& facts) {
    if (!facts.document_fault) return;
    std::string text = facts.document_fault->what;
    text.front() = 'T';
    findings.push_back({problem, "document", text, facts.document_fault->advice});
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
                fmt::format("serverAddress has fewer than {} characters, which the library "
                            "ignores.",
                            shortest_address),
                fmt::format("Set it: \"qvtcctl connection set {} serverAddress=ADDRESS\".", id)};
    }
    return {ok, "settings", "The client gets all that it needs.", ""};
}

/// What is stored and has no effect, of the fields that people take for ones that have.
void add_advice(Findings& findings, const ConnectionType& type, unsigned id, const Record& record) {
    std::vector<std::size_t> fields{field_index("rdpPort"), field_index("appFullpath"),
                                    field_index("useRdGateway"), field_index("rdGatewayUsername"),
                                    field_index("rdGatewayPassword")};
    if (type.number != QVTC_TYPE_SPICE) fields.insert(fields.begin(), field_index("port"));
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

/// Whether the server checks the user before the session begins; nothing when that is not known.
std::optional<bool> wants_logon_first(const DoctorFacts& facts) {
    const bool asked = facts.server && facts.server->security && facts.server->security->chosen;
    if (!asked) return std::nullopt;
    return !facts.server->security->asks_for_logon();
}

/// What is missing of the user's name and password for an RDP session, if something is.
std::optional<Finding> missing_logon(unsigned id, bool user, bool password,
                                     std::optional<bool> wanted_first) {
    if (user && password) return std::nullopt;
    if (wanted_first == false) {
        return Finding{ok, "password", "Not all of the logon is stored; the server asks for it.",
                       ""};
    }
    const std::string missing = user       ? "A user name is stored, and no password."
                                : password ? "A password is stored, and no user name."
                                           : "No user name and no password is stored.";
    const std::string advice = fmt::format(
        "Store {}: \"qvtcctl connection set {}{}{}\".", user || password ? "it" : "them", id,
        user ? "" : " username=NAME", password ? "" : " --password");
    if (wanted_first) {
        return Finding{problem, "password", missing + " The server wants both before the session.",
                       advice};
    }
    return Finding{warning, "password", missing + " Most servers want both before the session.",
                   advice};
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

void add_rdp_passwords(Findings& findings, const ConnectionType& type, unsigned id,
                       const Record& record, const DoctorFacts& facts) {
    const bool password = !record[field_index("password")].empty();
    const bool user = !record[field_index("username")].empty() ||
                      !record[field_index("rdGatewayUsername")].empty();
    if (const auto missing = missing_logon(id, user, password, wants_logon_first(facts))) {
        findings.push_back(*missing);
    }
    if (password) {
        findings.push_back(password_finding(type, id, record, "password", "--password"));
    }
    if (!record[field_index("rdGatewayPassword")].empty()) {
        findings.push_back(
            password_finding(type, id, record, "rdGatewayPassword", "--gateway-password"));
    }
}

void add_passwords(Findings& findings, const ConnectionType& type, unsigned id,
                   const Record& record, const DoctorFacts& facts) {
    switch (type.number) {
    case QVTC_TYPE_RDP:
        return add_rdp_passwords(findings, type, id, record, facts);
    case QVTC_TYPE_VNC:
        if (!record[field_index("password")].empty()) findings.push_back(vnc_password_finding(id));
        return;
    default:
        break;
    }
    if (!contains(fields[field_index("password")].used_by, type)) return;
    findings.push_back(password_finding(type, id, record, "password", "--password"));
}

// ------------------------------------------------------------------ the way to the server

void append(Findings& findings, const Findings& more) {
    findings.insert(findings.end(), more.begin(), more.end());
}

void add_servers(Findings& findings, const ConnectionType& type, unsigned id, const Record& record,
                 const DoctorFacts& facts) {
    if (facts.gateway) {
        append(findings,
               findings_on_server({type, id, "rdGatewayAddress", facts.now}, *facts.gateway));
        findings.push_back(
            {ok, "server", "The gateway connects to it; from here it was not looked at.", ""});
    } else if (facts.server) {
        append(findings, findings_on_server({type, id, "serverAddress", facts.now}, *facts.server));
    } else if (!record.address().empty()) {
        findings.push_back({ok, "name", "The address names no server.", ""});
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

Finding storage_finding(const DoctorFacts& facts) {
    if (!facts.storage_fault) return {ok, "storage", "Settings and logs can be written.", ""};
    return {problem, "storage",
            fmt::format("Nothing can be written in {}: {}.", storage_folder, *facts.storage_fault),
            "Free some space, or have the disk mounted writable."};
}

void add_last_failure(Findings& findings, const DoctorFacts& facts) {
    if (!facts.last_failure) return;
    findings.push_back({warning, "last launch",
                        fmt::format("It failed. {}", facts.last_failure->means),
                        facts.last_failure->advice});
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

Findings findings_on(const ConnectionType& type, unsigned id, const Record& record,
                     const DoctorFacts& facts) {
    Findings findings;
    add_document(findings, facts);
    findings.push_back(settings_finding(type, id, record));
    add_advice(findings, type, id, record);
    add_passwords(findings, type, id, record, facts);
    add_servers(findings, type, id, record, facts);
    findings.push_back(storage_finding(facts));
    findings.push_back(client_finding(type, facts));
    if (!can_be_launched(type)) return findings;
    findings.push_back(screen_finding(facts));
    findings.push_back(sound_finding(type, record, facts));
    add_markers(findings, type, record, facts);
    add_last_failure(findings, facts);
    return findings;
}

Health worst_of(const Findings& findings) {
    Health worst = ok;
    for (const Finding& finding : findings) worst = std::max(worst, finding.health);
    return worst;
}

} // namespace qvtc::qvtcctl
