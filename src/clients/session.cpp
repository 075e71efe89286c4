#include "clients/session.hpp"

#include "clients/start_marker.hpp"
#include "clients/watcher.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

void begin_session(const char* marker_log) {
    const std::string marker = store_start_marker();
    os().run(textf("echo '%s'>>%s", marker.c_str(), marker_log));
}

bool start_session(const Session& session, const std::string& command_line,
                   std::initializer_list<const char*> before) {
    // Deliberate: the setting gets a fresh marker while the log keeps the first;
    // they differ when the second has turned in between.
    store_start_marker();
    const std::string command = textf("%s >>%s 2>&1 &", command_line.c_str(), session.client_log);
    log(Level::info, "%s params:%s", session.params_text, command.c_str());
    for (const char* const each : before) os().run(each);
    os().run(command);
    return start_watch(watch_for_outcome, session.window);
}

} // namespace qvtc::clients
