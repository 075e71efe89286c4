#include "qvtcctl/clients/ending.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/clients/follow.hpp"
#include "qvtcctl/clients/launchable.hpp"
#include "qvtcctl/clients/launcher.hpp"
#include "qvtcctl/clients/running_clients.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <csignal>

#include <fmt/format.h>

namespace qvtc::qvtcctl {

void end_clients(const std::vector<Process>& clients) {
    constexpr std::chrono::seconds longest_end{3};
    for (const Process& client : clients) kill(client.pid, SIGTERM);
    const std::vector<Process> left = wait_for_end(clients, longest_end);
    if (left.empty()) return;
    throw Refusal(ExitCode::not_done, fmt::format("the client with process number {0} does not "
                                                  "end. Try \"kill -9 {0}\".",
                                                  left.front().pid));
}

namespace {

/// Ends every client that can be launched from here, and says how many of which kind.
Answer end_all_clients(const Launcher& launcher) {
    std::vector<Process> clients;
    std::string kinds;
    for (const ConnectionType& type : connection_types) {
        if (!can_be_launched(type)) continue;
        const std::vector<Process> running = running_clients(type);
        if (running.empty()) continue;
        clients.insert(clients.end(), running.begin(), running.end());
        kinds += fmt::format("{}{} {}", kinds.empty() ? "" : ", ", running.size(), type.title);
    }
    // The library finds only RDP clients that have a tty; those started from here have none.
    launcher.cancel_rdp();
    end_clients(clients);
    Answer answer;
    answer.text =
        clients.empty() ? "No client is running.\n" : fmt::format("Ended clients: {}.\n", kinds);
    answer.json = json_map();
    add_number(answer.json, "ended", static_cast<long>(clients.size()));
    return answer;
}

Answer end_client_of(const StoredConnections& connections, unsigned id) {
    const ConnectionType& type = require_type_of_id(id);
    require_launchable(type);
    const Record record = connections.record(id);
    const std::vector<Process> clients = clients_of(type, record);
    end_clients(clients);
    Answer answer;
    const std::string label = label_of(id, record);
    answer.text = clients.empty() ? fmt::format("No client of connection {} is running.\n", label)
                                  : fmt::format("Ended the client of connection {}.\n", label);
    answer.json = json_map();
    add_number(answer.json, "ended", static_cast<long>(clients.size()));
    return answer;
}

const Argument cancelled_argument =
    optional_argument("ID", "number of a connection; without it, all clients are ended")
        .completed_by(connection_words);

Answer run_cancel(const Request& request) {
    std::optional<unsigned> id;
    if (!request.text(cancelled_argument).empty())
        id = require_id(request.text(cancelled_argument));
    const StoredConnections connections(request.chatter());
    return id ? end_client_of(connections, *id) : end_all_clients(Launcher(request.chatter()));
}

} // namespace

const Verb verbs::cancel{
    .name = "cancel",
    .summary = "End running clients",
    .description = "Ends the client of one connection, or all running clients: RDP, SPICE, "
                   "Horizon, VNC and web. A browser is ended as a whole, with all its pages.",
    .examples = {"qvtcctl cancel", "qvtcctl cancel 64"},
    .arguments = {cancelled_argument},
    .settings = Settings::not_needed,
    .run = run_cancel,
};

} // namespace qvtc::qvtcctl
