#pragma once

#include <string>
#include <utility>
#include <vector>

namespace qvtc::test {

using Fields = std::vector<std::pair<std::string, std::string>>;

inline constexpr const char* rdp_log = "/home/root/freerdp.log";

/// Stores a new RDP record with these fields and answers its id; throws std::runtime_error when
/// it was not stored.
unsigned store_record(const Fields& fields);

/// The same for a record of another type, one of QVTC_TYPE_...
unsigned store_record(unsigned type, const Fields& fields);

/// The form in which a record holds a password.
std::string stored_password(const std::string& password);

/// Launches a connection just after the clock's second has turned, and gives qvlaunchclient()'s
/// status. The start mark in the log and the one in the settings are of the same second then;
/// where they are not, no diagnosis finds its place in the log.
int launch_within_a_second(unsigned id);

/// What the library says has come of a launch.
std::string status_of(unsigned id);

/// Launches a connection, waits until its client has had its say and is gone, and answers what
/// the library says. Fails the test if the client does not end.
std::string status_of_failed_launch(unsigned id);

/// The command lines with which this test launched RDP clients.
std::vector<std::string> launched_clients();

/// The log of the RDP client, without the start mark that it must begin with.
std::string client_words();

/// The status that reports the log from this phrase on; fails the test when the log has none.
std::string status_from(const std::string& phrase);

/// The status of a client that has gone without known words.
std::string status_unknown();

/// What the watcher has written into the client-status file, without its line's end.
std::string watchers_verdict();

/// Waits until the watcher has written what came of the launch, and answers that.
std::string wait_for_verdict();

inline constexpr const char* verdict_connected = "0x00000000 connect success";
inline constexpr const char* verdict_failed = "0x00000001 connect failed";

/// base64 of a text.
std::string base64_of(const std::string& text);

} // namespace qvtc::test
