#pragma once

#include <string>

#include "connections/types.hpp"

/// Starting and ending clients.
namespace qvtc::clients {

/// Runs the launcher of the type that owns the id; false, and an error in the
/// log, for an id of a type without a client.
bool launch(connections::ConnectionId id);

/// Runs `xfreerdp` with shell text for its arguments, and waits; the status of
/// system().
int run_rdp_client(const char* arguments);

/// Ends the running RDP clients; false when the process list cannot be read.
bool cancel_rdp_clients();

enum class CommandRun { ended, not_started, no_status_file };

/// Runs a command text while the client-status file is open and empty.
CommandRun run_with_status_file(const char* command);

} // namespace qvtc::clients
