#pragma once

#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/argument.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// Whether a verb makes sense while the settings document cannot be read.
enum class Settings {
    needed,    ///< no: it is refused, and the refusal says what to do
    not_needed ///< yes: it runs, and a note tells of the document
};

/// One command. Parsing, help, completion and the man page's test all read this row.
struct Verb {
    std::string_view name;
    std::string_view summary;               ///< one line, for the list of commands
    std::string_view description;           ///< whole sentences, for its help
    std::vector<std::string_view> examples; ///< lines that can be typed
    std::vector<Argument> arguments = {};   ///< in the order of its help
    Settings settings = Settings::needed;
    Answer (*run)(const Request&) = nullptr;
};

/// Commands that share a first word; with an empty name they stand alone.
struct Group {
    std::string_view name;
    std::string_view summary;
    std::vector<const Verb*> verbs;
};

std::span<const Group> groups();

} // namespace qvtc::qvtcctl
