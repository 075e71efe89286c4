#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/clients/follow.hpp"
#include "qvtcctl/clients/launcher.hpp"
#include "qvtcctl/clients/running_clients.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/doctor/doctor_findings.hpp"
#include "qvtcctl/verb/verbs.hpp"
#include "qvtcctl/verb/windows.hpp"

#include <algorithm>

#include <fmt/format.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr auto longest_resolution = 5s;
constexpr auto longest_answer = 3s;
constexpr std::size_t most_addresses = 2; ///< that are tried before the port counts as closed

// ------------------------------------------------------------------ looking

/// The first address whose port answers; else an empty text. An address to which there is no route
/// says nothing of a server that has another one.
std::string answering_address(ServerFacts& facts) {
    const std::size_t count = std::min(facts.resolution.addresses.size(), most_addresses);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& address = facts.resolution.addresses[i];
        const PortAnswer answer = try_port(address, facts.address.port, longest_answer);
        facts.answer = std::min(facts.answer.value_or(answer), answer);
        if (answer == PortAnswer::answered) return address;
    }
    return "";
}

void look_at_certificate(ServerFacts& facts, const std::string& address) {
    ServerSocket server(address, facts.address.port, longest_answer);
    if (!facts.security || negotiate(server, offered_by_client))
        facts.certificate = certificate_of(server, facts.address.host);
    facts.tls_was_silent = !facts.certificate && server.timed_out();
}

ServerFacts look_at(const ServerAddress& address, bool speaks_rdp) {
    ServerFacts facts;
    facts.address = address;
    facts.resolution = resolve(address.host, longest_resolution);
    if (address.port == 0) return facts;
    const std::string answering = answering_address(facts);
    if (answering.empty()) return facts;
    if (speaks_rdp) facts.security = rdp_security_of(answering, address.port, longest_answer);
    if (shows_certificate(facts)) look_at_certificate(facts, answering);
    return facts;
}

/// Why the last launch of this very connection failed; a session that has ended was no failure.
std::optional<Explanation> last_failure_of(const Launcher& launcher, const ConnectionType& type,
                                           const Record& record) {
    if (!can_be_launched(type)) return std::nullopt;
    const Standing standing = standing_of(launcher, type, record);
    const bool ended = standing.state == State::failed || standing.state == State::not_running;
    const Explanation& words = standing.last_words;
    if (!ended || !words.known || words.ends_session) return std::nullopt;
    return words;
}

DoctorFacts look_around(const Launcher& launcher, const ConnectionType& type,
                        const Record& record) {
    DoctorFacts facts;
    if (const auto gateway = gateway_of(type, record)) {
        facts.gateway = look_at(*gateway, false);
    } else if (const auto server = server_of(type, record)) {
        facts.server = look_at(*server, type.number == QVTC_TYPE_RDP);
    }
    facts.document_fault = fault_in_settings_document();
    facts.storage_fault = storage_fault(storage_folder);
    facts.last_failure = last_failure_of(launcher, type, record);
    facts.client_installed = is_installed(type.process);
    facts.screen_answers = look_for_window("") != Sight::unknown;
    facts.sound_runs = !running_processes("pulseaudio").empty();
    for (const MarkerFile& marker : marker_files) {
        if (access(std::string(marker.path).c_str(), F_OK) == 0) facts.markers.insert(marker.path);
    }
    facts.now = std::time(nullptr);
    return facts;
}

// ------------------------------------------------------------------ telling

std::string findings_text(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text +=
            fmt::format("  {:<9}{:<13}{}\n", name_of(finding.health), finding.check, finding.text);
        if (!finding.advice.empty()) {
            text += fmt::format("  {:<22}What to do: {}\n", "", finding.advice);
        }
    }
    return text;
}

std::string counted(std::size_t count, std::string_view what) {
    return fmt::format("{} {}{}", count == 0 ? "no" : std::to_string(count), what,
                       count == 1 ? "" : "s");
}

std::string summary(const Findings& findings) {
    const auto count = [&](Health health) {
        return static_cast<std::size_t>(
            std::count_if(findings.begin(), findings.end(),
                          [health](const Finding& finding) { return finding.health == health; }));
    };
    return fmt::format("{}, {}", counted(count(Health::problem), "problem"),
                       counted(count(Health::warning), "warning"));
}

Json findings_json(const Findings& findings) {
    Json list = json_list();
    for (const Finding& finding : findings) {
        Json row = json_map();
        add(row, "result", name_of(finding.health));
        add(row, "check", finding.check);
        add(row, "text", finding.text);
        add(row, "advice", finding.advice);
        append(list, std::move(row));
    }
    return list;
}

Answer answer_on(unsigned id, const ConnectionType& type, const Record& record,
                 const Findings& findings) {
    Answer answer;
    const Health worst = worst_of(findings);
    answer.code = worst == Health::problem ? ExitCode::connection_failed : ExitCode::done;
    answer.text = fmt::format("Connection {}, {}: {}\n{}", label_of(id, record), type.title,
                              summary(findings), findings_text(findings));
    answer.json = json_map();
    add_number(answer.json, "id", id);
    add(answer.json, "type", type.name);
    add(answer.json, "name", record.name());
    add(answer.json, "result", name_of(worst));
    add(answer.json, "findings", findings_json(findings));
    return answer;
}

Answer run_doctor(const Request& request) {
    const unsigned id = require_id(request.text(id_argument));
    const ConnectionType& type = require_type_of_id(id);
    const Record record = StoredConnections(request.chatter()).record(id);
    return answer_on(
        id, type, record,
        findings_on(type, id, record, look_around(Launcher(request.chatter()), type, record)));
}

} // namespace

const Verb verbs::doctor{
    .name = "doctor",
    .summary = "Check a connection without starting it",
    .description = "Looks at everything that a stored connection needs, and starts nothing: its "
                   "settings and passwords, its server's name, port and certificate, its "
                   "client, the screen, the sound, and the marker files that change what it "
                   "does. Each finding is ok, a warning or a problem, and says what to do.",
    .examples = {"qvtcctl doctor 32", "qvtcctl doctor 32 --json"},
    .arguments = {id_argument},
    .run = run_doctor,
};

} // namespace qvtc::qvtcctl
