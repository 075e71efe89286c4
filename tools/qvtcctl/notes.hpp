#pragma once

#include "qvtcctl/verb.hpp"

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// Gives an answer its notes, in the JSON form too, as "notes".
void add_notes(Answer& answer, std::vector<std::string> notes);

} // namespace qvtc::qvtcctl
