#pragma once

#include <initializer_list>
#include <string>

/// What the launchers of SPICE, VNC and web sessions have in common.
namespace qvtc::clients {

struct Session {
    const char* client_log;  ///< takes the client's output
    const char* params_text; ///< what the log calls the command
    const char* window;      ///< pattern of the client's window
};

/// Stores a start marker and appends it to a log.
void begin_session(const char* marker_log);

/// Stores a fresh marker, runs the commands that end former clients, starts this
/// one in the background and its watch.
bool start_session(const Session& session, const std::string& command_line,
                   std::initializer_list<const char*> before);

} // namespace qvtc::clients
