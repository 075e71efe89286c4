#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/clients/client_log.hpp"

#include <string>

namespace qvtc::qvtcctl {

/// An explanation for a person: what it means, what to do, the client's own words and the lines of
/// its log, indented under a first line that the caller writes.
std::string explanation_text(const Explanation& explanation);

/// The same as an object: {"means", "advice", "words", "log", "lines"}.
Json explanation_json(const Explanation& explanation);

} // namespace qvtc::qvtcctl
