#include "qvtcctl/clients/follow.hpp"

#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/clients/client_words.hpp"
#include "qvtcctl/clients/launch_log.hpp"
#include "qvtcctl/clients/running_clients.hpp"
#include "qvtcctl/clients/storage.hpp"
#include "qvtcctl/verb/system_log.hpp"

#include <algorithm>
#include <charconv>
#include <thread>

#include <fmt/format.h>
#include <sys/stat.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto between_looks = 500ms;
constexpr std::uintmax_t log_limit = 128UL * 1024;

bool is_rdp(const ConnectionType& type) { return type.number == QVTC_TYPE_RDP; }
bool is_web(const ConnectionType& type) { return type.number == QVTC_TYPE_WEB; }

std::vector<Process> without(std::vector<Process> clients, const std::vector<Process>& others) {
    std::erase_if(clients, [&](const Process& client) {
        return std::any_of(others.begin(), others.end(),
                           [&](const Process& other) { return other.pid == client.pid; });
    });
    return clients;
}

/// What a launch is compared with afterwards.
struct BeforeLaunch {
    explicit BeforeLaunch(const ConnectionType& type)
        : clients(running_clients(type)), client_log(std::string(type.log)),
          library_log(std::string(system_log)), storage(log_fault(type)), start(Clock::now()) {}

    std::vector<Process> clients;
    LogMark client_log;
    LogMark library_log;
    std::optional<std::string> storage;
    Clock::time_point start;
};

/// The launcher of VNC's viewer writes its mark into the log of SPICE's.
std::string_view since_own_start(const ConnectionType& type, std::string_view log) {
    const bool shared = type.number == QVTC_TYPE_SPICE;
    return since_last_start(log, shared ? launches_since(type, *find_type("vnc")) : 0);
}

/// The RDP launcher begins its log anew, if it can be written to; the others add to theirs. A
/// client of the kind that still runs may write there too.
std::string words_since_launch(const ConnectionType& type, const BeforeLaunch& before) {
    if (type.log.empty() || !before.client_log.is_touched()) return "";
    const std::string log =
        is_rdp(type) ? file_tail(std::string(type.log), log_limit) : before.client_log.added();
    return without_words_of(is_web(type) ? std::vector<Process>() : before.clients,
                            since_own_start(type, log));
}

/// The clients that may serve the launch. A browser that ran before shows the new page itself, so
/// it counts too.
std::vector<Process> launched_clients(const ConnectionType& type, const BeforeLaunch& before) {
    const std::vector<Process> running = running_clients(type);
    return is_web(type) ? running : without(running, before.clients);
}

Look look_at(const Launcher& launcher, const ConnectionType& type, const Record& record,
             const std::vector<Process>& clients, std::string_view words) {
    Look look;
    look.client_runs = !clients.empty();
    if (look.client_runs) look.window = look_for_window(type.window);
    if (is_rdp(type)) {
        const std::string status = launcher.status(record.id().value_or(0));
        look.library_tells_failure = !reason_of(status).empty();
    } else {
        look.said = said_in(type, words_about(type, record, words), asked_to_talk(type, clients));
    }
    return look;
}

/// What the library wrote when it gave the launch up before it started a client; else empty.
std::string why_given_up(const BeforeLaunch& before) {
    constexpr std::string_view sign = "decode error";
    const std::string complaint = last_complaint(before.library_log.added());
    return complaint.find(sign) == std::string::npos ? "" : complaint;
}

Explanation explain_given_up(const ConnectionType& type, unsigned id,
                             const std::string& complaint) {
    Explanation told = explain(type, id, complaint, "");
    told.log = system_log;
    told.words = "";
    return told;
}

/// Why a client has failed, from its words since its start.
Explanation explain_words(const Launcher& launcher, const ConnectionType& type,
                          const Record& record, const std::string& words) {
    const unsigned id = record.id().value_or(0);
    // The library reads the same log, which without words is that of no launch or of another one.
    const bool has_log = is_rdp(type) && !words.empty();
    const std::string reason = has_log ? reason_of(launcher.status(id)) : "";
    const Route route = route_of(type, record);
    Explanation told = explain(type, id, words_about(type, record, words), reason, route);
    if (!told.known) told = explain(type, id, words, reason, route);
    if (told.known || is_installed(type.process)) return told;
    return explain(type, id, "", "command not found"); // as its shell would say
}

/// Whether a client of which nobody has watched the start can have had a session: one whose last
/// words came right after its start mark, "[SECONDS]start to connect...", has had none.
bool can_have_had_session(const ConnectionType& type, std::string_view words) {
    if (const std::optional<bool> told = had_session(words)) return *told;
    constexpr std::int64_t shortest_session = 3;
    std::int64_t start = 0;
    struct stat log {};
    if (words.empty() || stat(std::string(type.log).c_str(), &log) != 0) return true;
    std::from_chars(words.data() + 1, words.data() + words.size(), start);
    return log.st_mtim.tv_sec - start >= shortest_session;
}

std::string log_of(const ConnectionType& type) {
    return type.log.empty() ? "" : file_tail(std::string(type.log), log_limit);
}

/// Whether a browser has opened the connection's page, of which its report tells. Its arguments are
/// those of its first page; it takes every further one while it runs.
bool has_opened(const Process& browser, const ConnectionType& type, const Record& record,
                const std::string& log) {
    return is_web(type) && !words_about(type, record, report_of({browser}, log)).empty();
}

/// Those of the clients that serve the connection.
std::vector<Process> clients_of(const ConnectionType& type, const Record& record,
                                std::vector<Process> clients, std::optional<unsigned> last,
                                const std::string& log) {
    if (is_web(type) && last == record.id()) return clients;
    std::erase_if(clients, [&](const Process& client) {
        return !serves(client, type, record) && !has_opened(client, type, record, log);
    });
    return clients;
}

/// What the clients of a connection have written since its launch. All clients of a kind write into
/// one log, where only the last launch's words can be told from those before; only a browser's
/// report names the page as well.
std::string own_words_in(const std::string& log, const ConnectionType& type,
                         const std::vector<Process>& clients, const std::vector<Process>& others,
                         bool launched_last) {
    if (launched_last) return without_words_of(others, since_own_start(type, log));
    return is_web(type) ? report_of(clients, log) : "";
}

/// How a connection stands. Where a session of it has been seen, its end is no failed beginning.
Standing look_for_standing(const Launcher& launcher, const ConnectionType& type,
                           const Record& record, bool session_seen) {
    const std::vector<Process> all = running_clients(type);
    const std::optional<unsigned> last = last_launched(type);
    const std::string log = log_of(type);
    const std::vector<Process> clients = clients_of(type, record, all, last, log);
    const std::vector<Process> others = without(all, clients);
    const bool launched_last = last ? last == record.id() : !clients.empty();
    const std::string words = own_words_in(log, type, clients, others, launched_last);
    const Look look = look_at(launcher, type, record, clients, words);
    Standing standing;
    standing.state = state_of(look);
    standing.window = look.window;
    standing.other_runs = !others.empty();
    if (clients.empty()) standing.storage_fault = log_fault(type);
    if (!launched_last && words.empty()) return standing;
    standing.last_words = explain_words(launcher, type, record, words);
    if (!session_seen && !can_have_had_session(type, words)) {
        standing.last_words = never_began(std::move(standing.last_words));
    }
    return standing;
}

} // namespace

LaunchOutcome launch_and_follow(const Launcher& launcher, const ConnectionType& type,
                                const Record& record, std::chrono::seconds timeout,
                                Progress& progress) {
    const unsigned id = record.id().value_or(0);
    const std::string label = label_of(id, record);
    const auto show = [&](State state, std::chrono::milliseconds since) {
        progress.show(fmt::format("Connection {}: {}", label, words_of(state)),
                      std::chrono::duration_cast<std::chrono::seconds>(since).count());
    };
    show(State::starting, 0ms);
    const BeforeLaunch before(type);
    launcher.launch(id);
    LaunchJudge judge;
    LaunchOutcome outcome;
    if (const std::string complaint = why_given_up(before); !complaint.empty()) {
        outcome.state = State::failed;
        outcome.explanation = explain_given_up(type, id, complaint);
        return outcome;
    }
    bool window_seen = false;
    while (true) {
        const std::string words = words_since_launch(type, before);
        Look look = look_at(launcher, type, record, launched_clients(type, before), words);
        look.since_launch =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - before.start);
        window_seen = window_seen || look.window == Sight::seen;
        outcome.state = judge.judge(look);
        outcome.window = look.window;
        outcome.took = look.since_launch;
        if (outcome.state == State::connected) return outcome;
        if (outcome.state == State::failed) {
            outcome.explanation = explain_words(launcher, type, record, words);
            if (!outcome.explanation.known && before.storage) {
                outcome.explanation = explain_storage(*before.storage);
            }
            if (!window_seen && !had_session(words).value_or(false)) {
                outcome.explanation = never_began(std::move(outcome.explanation));
            }
            return outcome;
        }
        outcome.timed_out = look.since_launch >= timeout;
        if (outcome.timed_out) return outcome;
        show(outcome.state, look.since_launch);
        std::this_thread::sleep_for(between_looks);
    }
}

std::vector<Process> clients_of(const ConnectionType& type, const Record& record) {
    return clients_of(type, record, running_clients(type), last_launched(type), log_of(type));
}

Standing standing_of(const Launcher& launcher, const ConnectionType& type, const Record& record) {
    return look_for_standing(launcher, type, record, false);
}

Standing follow_standing(const Launcher& launcher, const ConnectionType& type, const Record& record,
                         const std::function<void(const Standing&)>& tell) {
    std::optional<State> told;
    bool session_seen = false;
    while (true) {
        Standing standing = look_for_standing(launcher, type, record, session_seen);
        session_seen = session_seen || standing.state == State::connected;
        if (standing.state != told) tell(standing);
        told = standing.state;
        const bool ended = *told == State::failed || *told == State::not_running;
        if (ended || !lost_output().empty()) return standing;
        std::this_thread::sleep_for(between_looks);
    }
}

} // namespace qvtc::qvtcctl
