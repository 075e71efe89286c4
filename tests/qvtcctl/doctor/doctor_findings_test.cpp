#include "qvtcctl/doctor/doctor_findings.hpp"

#include "healthy_server.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using Values = std::vector<std::pair<std::string_view, std::string>>;
using enum Health;

Record record_of(const Values& values) {
    Record record;
    for (const auto& [field, value] : values) record[*find_field(field)] = value;
    return record;
}

const Values office{{"serverAddress", "10.0.0.5"},
                    {"username", "anna"},
                    {"password", "c2VjcmV0"},
                    {"colorDepth", "32"}};

Values with(Values values, const Values& more) {
    values.insert(values.end(), more.begin(), more.end());
    return values;
}

DoctorFacts healthy(std::string_view type, const Record& record) {
    DoctorFacts facts;
    if (const auto address = server_of(*find_type(type), record)) {
        facts.server = healthy_server(*address);
    }
    facts.now = now;
    return facts;
}

std::vector<Finding> findings(std::string_view type, const Values& values,
                              const DoctorFacts& facts) {
    return findings_on(*find_type(type), first_id(*find_type(type)), record_of(values), facts);
}

/// What was found of one thing, as "problem: text".
std::vector<std::string> told_of(std::string_view check, const std::vector<Finding>& findings) {
    std::vector<std::string> told;
    for (const Finding& finding : findings) {
        if (finding.check != check) continue;
        told.push_back(std::string(name_of(finding.health)) + ": " + finding.text);
    }
    return told;
}

using Told = std::vector<std::string>;

/// What is found when the healthy terminal is changed.
template <typename Change>
Told told_when(std::string_view check, std::string_view type, const Values& values, Change change) {
    DoctorFacts facts = healthy(type, record_of(values));
    change(facts);
    return told_of(check, findings(type, values, facts));
}

TEST(QvtcctlDoctorFindings, OfAHealthyConnectionAreAllOk) {
    const Record record = record_of(office);
    const std::vector<Finding> all = findings("rdp", office, healthy("rdp", record));
    EXPECT_EQ(worst_of(all), ok);
    Told checks;
    for (const Finding& finding : all) {
        checks.emplace_back(finding.check);
        EXPECT_EQ(finding.advice, "") << finding.text;
    }
    EXPECT_EQ(checks, (Told{"settings", "password", "name", "port", "storage", "client", "screen",
                            "sound", "marker file"}));
}

TEST(QvtcctlDoctorFindings, SayWhatToDoWheneverSomethingIsNotOk) {
    const Values broken{{"username", "anna"},        {"password", "abcde"},
                        {"useRdGateway", "on"},      {"rdpPort", "3390"},
                        {"redirectAudio", "on"},     {"usbRedirection", "on"},
                        {"rdGatewayPassword", "abc"}};
    DoctorFacts facts;
    facts.gateway = ServerFacts{{"g", 443, true}, {{"10.0.0.6"}}, PortAnswer::answered, {}, {}};
    facts.storage_fault = "Read-only file system";
    facts.client_installed = facts.screen_answers = facts.sound_runs = false;
    facts.markers = {"/home/root/usbdenied"};
    facts.now = now;
    const std::vector<Finding> all = findings("rdp", broken, facts);
    EXPECT_EQ(worst_of(all), problem);
    for (const Finding& finding : all) {
        EXPECT_TRUE(finding.text.ends_with('.')) << finding.text;
        EXPECT_EQ(finding.advice.empty(), finding.health == ok) << finding.text;
    }
    EXPECT_GE(
        std::count_if(all.begin(), all.end(), [](const Finding& f) { return f.health != ok; }), 10);
}

TEST(QvtcctlDoctorFindings, OfTheSettingsGoByTheClient) {
    const auto nothing = [](DoctorFacts&) {};
    EXPECT_EQ(told_when("settings", "rdp", office, nothing),
              Told{"ok: The client gets all that it needs."});
    EXPECT_EQ(told_when("settings", "rdp", {{"serverAddress", "10.0.0.5"}}, nothing).size(), 1U);
    EXPECT_TRUE(told_when("settings", "rdp", {{"serverAddress", "10.0.0.5"}}, nothing)
                    .front()
                    .starts_with("problem: colorDepth is missing"));
    EXPECT_TRUE(
        told_when("settings", "vnc", {}, nothing).front().starts_with("problem: serverAddress"));
    EXPECT_EQ(told_when("settings", "vnc", {{"serverAddress", "h"}}, nothing),
              Told{"problem: serverAddress has fewer than 4 characters, which the library "
                   "ignores."});
    EXPECT_EQ(told_when("settings", "vnc", {{"serverAddress", "h.lan"}, {"port", "5901"}}, nothing),
              (Told{"ok: The client gets all that it needs.",
                    "warning: port is stored, but the VNC client does not get it: write "
                    "serverAddress=ADDRESS::PORT."}));
}

TEST(QvtcctlDoctorFindings, OfThePasswordsSayWhetherTheyCanBeDecoded) {
    struct Case {
        std::string_view type;
        Values values;
        Told told;
    };
    const Case cases[] = {
        {"rdp", office, {"ok: The stored password can be decoded."}},
        {"horizon", {}, {"ok: None is stored, and no user name."}},
        {"horizon",
         {{"username", "anna"}},
         {"warning: A user name is stored, and no password for it."}},
        {"horizon",
         {{"password", "abcde"}},
         {"problem: The stored password cannot be decoded; the client would not be started."}},
        {"horizon",
         {{"password", "ab=c"}},
         {"problem: The stored password cannot be decoded; the client would be given another "
          "one."}},
        {"rdp",
         with(office, {{"rdGatewayPassword", "x"}}),
         {"ok: The stored password can be decoded.",
          "problem: The stored rdGatewayPassword cannot be decoded; the client would not be "
          "started."}},
        {"vnc",
         {{"password", "secret"}},
         {"problem: The viewer takes a stored password for the beginning of the address."}},
        {"vnc", {}, {}},
        {"spice", {{"password", "abcde"}}, {}},
        {"web", {{"password", "abcde"}}, {}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(told_when("password", each.type, each.values, [](DoctorFacts&) {}), each.told)
            << each.type;
    }
}

TEST(QvtcctlDoctorFindings, OfTheLogonGoByWhatTheServerWants) {
    const auto logon = [](const Values& values, const RdpSecurity& security) {
        return told_when("password", "rdp", values,
                         [&](DoctorFacts& facts) { facts.server->security = security; });
    };
    const RdpSecurity first{RdpSecurity::Answer::given, nla, false, false, true};
    const RdpSecurity in_session{RdpSecurity::Answer::given, tls, false, true, false};
    const Values nobody{{"serverAddress", "10.0.0.5"}};
    EXPECT_EQ(logon(nobody, first), Told{"problem: No user name and no password is stored. The "
                                         "server wants both before the session."});
    EXPECT_EQ(logon(with(nobody, {{"username", "anna"}}), first),
              Told{"problem: A user name is stored, and no password. The server wants both before "
                   "the session."});
    EXPECT_EQ(logon(with(nobody, {{"password", "c2VjcmV0"}}), first),
              (Told{"problem: A password is stored, and no user name. The server wants both before "
                    "the session.",
                    "ok: The stored password can be decoded."}));
    EXPECT_EQ(logon(nobody, in_session),
              Told{"ok: Not all of the logon is stored; the server asks for it."});
    EXPECT_EQ(logon(nobody, RdpSecurity{}), Told{"warning: No user name and no password is stored. "
                                                 "Most servers want both before the session."});
    // The gateway's user name takes the place of the user name.
    EXPECT_EQ(logon({{"serverAddress", "10.0.0.5"},
                     {"rdGatewayUsername", "anna"},
                     {"password", "c2VjcmV0"}},
                    first),
              Told{"ok: The stored password can be decoded."});
}

TEST(QvtcctlDoctorFindings, OfWhatTheServerIsComeBetween) {
    EXPECT_EQ(told_when("name", "rdp", office, [](DoctorFacts& facts) { facts.server.reset(); }),
              Told{"ok: The address names no server."});
}

TEST(QvtcctlDoctorFindings, OfADamagedDocumentSayWhereAndWhatToDo) {
    const DocumentFault fault{"the settings document /x is damaged: line 3.", "Restore it.", true};
    const auto damage = [&](DoctorFacts& facts) { facts.document_fault = fault; };
    EXPECT_EQ(told_when("document", "rdp", office, damage),
              Told{"problem: The settings document /x is damaged: line 3."});
    DoctorFacts facts = healthy("rdp", record_of(office));
    damage(facts);
    EXPECT_EQ(findings("rdp", office, facts).front().advice, "Restore it.");
}

TEST(QvtcctlDoctorFindings, OfTheStorageSayWhyNothingCanBeWritten) {
    EXPECT_EQ(told_when("storage", "rdp", office, [](DoctorFacts&) {}),
              Told{"ok: Settings and logs can be written."});
    EXPECT_EQ(
        told_when("storage", "web", {},
                  [](DoctorFacts& facts) { facts.storage_fault = "No space left on device"; }),
        Told{"problem: Nothing can be written in /home/root: No space left on device."});
}

TEST(QvtcctlDoctorFindings, OfTheLastFailureSayWhatItMeant) {
    EXPECT_EQ(told_when("last launch", "rdp", office, [](DoctorFacts&) {}), Told{});
    EXPECT_EQ(told_when("last launch", "rdp", office,
                        [](DoctorFacts& facts) {
                            facts.last_failure =
                                explain(*find_type("rdp"), 32, "LOGON_FAILURE", "");
                        }),
              Told{"warning: It failed. The server refused the user name or the password."});
}

// The gateway connects to the server, so from the terminal there need not be a route to it.
TEST(QvtcctlDoctorFindings, OfAGatewayTakeThePlaceOfTheServers) {
    const auto told = [](std::string_view check) {
        return told_when(check, "rdp", office, [](DoctorFacts& facts) {
            facts.gateway = healthy_server({"10.0.0.9", 443, true});
        });
    };
    EXPECT_EQ(told("name"), Told{"ok: 10.0.0.9 is an address."});
    EXPECT_EQ(told("certificate").size(), 1U);
    EXPECT_EQ(told("server"),
              Told{"ok: The gateway connects to it; from here it was not looked at."});
}

TEST(QvtcctlDoctorFindings, OfTheTerminalSayWhatIsMissing) {
    EXPECT_EQ(told_when("client", "rdp", office,
                        [](DoctorFacts& facts) { facts.client_installed = false; }),
              Told{"problem: xfreerdp is not installed."});
    EXPECT_EQ(told_when("screen", "rdp", office,
                        [](DoctorFacts& facts) { facts.screen_answers = false; }),
              Told{"problem: Display :0 could not be asked for its windows."});
    const auto silent = [](DoctorFacts& facts) { facts.sound_runs = false; };
    EXPECT_EQ(told_when("sound", "rdp", office, silent),
              Told{"ok: PulseAudio does not run; this connection does not ask for it."});
    EXPECT_EQ(told_when("sound", "rdp", with(office, {{"redirectAudio", "on"}}), silent),
              Told{"warning: PulseAudio does not run; unless the launch can start it, there is no "
                   "sound."});
    // Where the front-end starts the client, nothing is known of what it needs.
    const Values farm{{"serverAddress", "c.lan"}};
    EXPECT_EQ(told_when("client", "citrix", farm, [](DoctorFacts&) {}),
              Told{"ok: The terminal's front-end starts its client."});
    EXPECT_EQ(told_when("screen", "citrix", farm, [](DoctorFacts&) {}), Told{});
}

TEST(QvtcctlDoctorFindings, NameTheMarkerFilesThatChangeThisConnection) {
    const auto all = [](DoctorFacts& facts) {
        for (const MarkerFile& marker : marker_files) facts.markers.insert(marker.path);
    };
    const std::pair<std::string_view, std::size_t> cases[] = {
        {"rdp", 5}, {"spice", 2}, {"horizon", 1}, {"vnc", 1}, {"web", 1}};
    for (const auto& [type, count] : cases) {
        EXPECT_EQ(told_when("marker file", type, {}, all).size(), count) << type;
    }
    EXPECT_EQ(told_when("marker file", "web", {}, all),
              Told{"ok: None that would change this connection."});
    EXPECT_EQ(told_when("marker file", "horizon", {}, all),
              Told{"ok: /etc/X11/clone is there. The screens are mirrored, so monitorSelect has no "
                   "effect."});
    for (const std::string_view field : {"usbRedirection", "localStorage"}) {
        EXPECT_TRUE(told_when("marker file", "rdp", {{field, "on"}}, all)
                        .front()
                        .starts_with("warning: /home/root/usbdenied is there."));
    }
    EXPECT_TRUE(told_when("marker file", "spice", {{"useRedirect", "on"}}, all)
                    .front()
                    .starts_with("warning: "));
    EXPECT_TRUE(told_when("marker file", "spice", {{"useRedirect", "off"}}, all)
                    .front()
                    .starts_with("ok: "));
}

} // namespace
} // namespace qvtc::qvtcctl
