#pragma once

#include "qvtcctl/base/processes.hpp"
#include "qvtcctl/connections/record.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// What a client's own words since its start come to.
enum class Said {
    nothing,    ///< it does not talk; its window must tell
    connecting, ///< it talks, and its connection is not there yet
    asking,     ///< it asks for a password on the screen
    connected,
    failed
};

/// A variable of a client's environment that makes it tell in its log how its connection stands.
/// Both clients keep to themselves otherwise what has become of it.
struct TalkRequest {
    const char* variable;
    const char* value;
};

/// Null for a client that needs none, or takes none.
const TalkRequest* talk_request(const ConnectionType& type);

/// Whether one of the clients was started with its request.
bool asked_to_talk(const ConnectionType& type, const std::vector<Process>& clients);

/// The log without the lines that name one of these processes as their writer.
std::string without_words_of(const std::vector<Process>& others, std::string_view log);

/// The lines of a browser's report that come from one of these processes.
std::string report_of(const std::vector<Process>& browsers, std::string_view log);

/// The lines of a log that are about this connection: a browser also tells of other pages, so
/// these are the ones of the tab in which the connection's page was opened last. Other clients
/// have one connection only.
std::string words_about(const ConnectionType& type, const Record& record, std::string_view log);

/// What these words come to; "asked" as asked_to_talk() says.
Said said_in(const ConnectionType& type, std::string_view words, bool asked);

} // namespace qvtc::qvtcctl
