#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "connections/types.hpp"
#include "core/json.hpp"

/// What has come of a launch, read from the client's log.
namespace qvtc::clients {

/// The value of a status: "1" connected or nothing to report, "0" not connected
/// yet, else the base64 form of a failure's words.
namespace status_value {
inline constexpr const char* connected = "1";
inline constexpr const char* waiting = "0";
std::string failure(std::string_view words);
} // namespace status_value

/// The words of a log from the start marker on; nothing when it is not in it.
std::optional<std::string_view> since_marker(std::string_view log_text, std::string_view marker);

enum class RdpForm { current, earlier };

/// What an RDP client's words say by themselves; nothing when they leave it to
/// whether the client still runs.
std::optional<std::string> rdp_verdict(std::string_view words, RdpForm form);
std::string spice_verdict(std::string_view words);
std::string vnc_verdict(std::string_view words);

/// What a poll reports, given what the log says, and counts the poll when the
/// client runs: then the seventh, and every sixth after it, reports "connected"
/// whatever the log says.
std::string counted_poll(std::string value, bool client_runs, int& counter);

/// {"status": value} for a connection.
Json client_status(connections::ConnectionId id);

/// The text of an RDP status by the earlier form of the diagnosis, which neither
/// counts polls nor ever says "not connected yet".
std::string earlier_rdp_status();

} // namespace qvtc::clients
