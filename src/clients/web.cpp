#include "clients/web.hpp"

#include "clients/session.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"

namespace qvtc::clients {

namespace {

constexpr Session session = {paths::web_log, "firefox connection", "firefox"};

} // namespace

std::string web_command_line(const connections::Record& record) {
    return "firefox " + shell::bare(record[connections::Field::serverAddress]);
}

bool launch_web(connections::ConnectionId id) {
    begin_session(paths::web_log);
    const connections::Record record =
        connections::stored_record(connections::type_number::web, id);
    return start_session(session, web_command_line(record), {"killall firefox"});
}

} // namespace qvtc::clients
