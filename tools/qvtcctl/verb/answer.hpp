#pragma once

#include "qvtcctl/base/exit_codes.hpp"
#include "qvtcctl/base/json.hpp"

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// What a verb has to say at its end.
struct Answer {
    /// Adds a note, also to the "notes" of the JSON form.
    void add_note(const std::string& note);

    std::string text;               ///< for a person, on standard output
    Json json;                      ///< the same for a program, in place of the text
    ExitCode code = ExitCode::done; ///< for any other code, `error` is printed too
    std::string error;              ///< for a person, on standard error
    std::vector<std::string> notes; ///< things to know, on standard error
};

/// Gives an answer its notes, in the JSON form too, as "notes".
void add_notes(Answer& answer, std::vector<std::string> notes);

} // namespace qvtc::qvtcctl
