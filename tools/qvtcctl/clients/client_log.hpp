#pragma once

#include "qvtcctl/connections/server_address.hpp"
#include "qvtcctl/connections/types.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// The client's words since its last start: the text from the last line
/// "[SECONDS]start to connect..." on, or from the viewer's last banner, which is all that marks a
/// start in VNC's log; the whole text when it holds neither. The last "foreign" marks do not count.
std::string_view since_last_start(std::string_view log, std::size_t foreign = 0);

/// What is to be told about a failure.
struct Explanation {
    std::string means;  ///< one sentence; never empty
    std::string advice; ///< what to do
    std::string words;  ///< what the client itself calls it; empty when nothing was found
    std::string log;    ///< the file that the lines are from
    std::vector<std::string> lines; ///< of the log, printable and without the passwords of URLs
    bool known = false;             ///< false: the log names no reason that is in the table
    bool ends_session = false;      ///< true: the words are those of the end of a session
};

/// Explains a failure from the client's log since its start and from the library's own reason,
/// which is the text behind a base64 status ("" when there is none).
Explanation explain(const ConnectionType& type, unsigned id, std::string_view log,
                    std::string_view library_reason, Route route = Route::direct);

/// The same failure of a session that had not begun: then what is said of its end is not to be
/// taken at its word.
Explanation never_began(Explanation told);

/// Whether an RDP client had a session, by its log since its start; nothing when the log does not
/// tell, as that of a client which was killed.
std::optional<bool> had_session(std::string_view log);

/// Whether the log since the client's start ends in words of this very type's client for a failure.
bool names_failure(const ConnectionType& type, std::string_view log);

/// The text behind a failure status; empty for "0", "1" and what is no base64.
std::string reason_of(std::string_view status);

} // namespace qvtc::qvtcctl
