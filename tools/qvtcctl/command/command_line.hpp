#pragma once

#include "qvtcctl/verb/verb.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// A place in the tree of commands: the program itself, a group of commands, or a command.
struct Place {
    const Group* group = nullptr;
    const Verb* verb = nullptr;

    /// "qvtcctl connection add"
    std::string full_name() const;
};

/// What the words after the program's name ask for.
struct CommandLine {
    enum class Wanted { nothing, run, help, version };

    Place place;
    Wanted wanted = Wanted::nothing;
    Request request;
    std::string fault; ///< what is wrong with the words; empty when nothing is
};

/// Reads the words after the program's name.
CommandLine parse_command_line(std::vector<std::string> words);

/// "qvtcctl 1.0"
std::string version_text();

/// All arguments of a place, in the order of its help: its own, then those of all commands.
std::vector<Argument> arguments_of(const Place& place);

/// The whole help text of a place: usage, what it does, its commands or its arguments and
/// options, examples.
std::string help_of(const Place& place);

/// The words that may stand in the place of the last word.
std::vector<std::string> completions(const std::vector<std::string>& words);

} // namespace qvtc::qvtcctl
