#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

struct ProgramOutput {
    std::string text;       ///< its standard output
    bool succeeded = false; ///< it ended by itself, with status 0
};

/// Runs a program of the terminal, with its words and, in its environment, this "NAME=VALUE".
/// Nothing when it cannot be started, or is not done after three seconds.
std::optional<ProgramOutput> run_program(std::vector<std::string> words, std::string variable);

} // namespace qvtc::qvtcctl
