#pragma once

#include "qvtcctl/exit_codes.hpp"
#include "qvtcctl/json.hpp"
#include "qvtcctl/quiet.hpp"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace qvtc::qvtcctl {

/// What holds for every verb: its common options.
struct Context {
    bool json = false;
    bool debug = false;

    Chatter chatter() const { return debug ? Chatter::to_standard_error : Chatter::dropped; }
};

/// What a verb has to say at its end.
struct Answer {
    /// Adds a note, also to the "notes" of the JSON form.
    void add_note(const std::string& note);

    std::string text;               ///< for a person, on standard output
    Json json;                      ///< the same for a program, in place of the text
    ExitCode code = ExitCode::done; ///< with another one, "error" is said too
    std::string error;              ///< for a person, on standard error
    std::vector<std::string> notes; ///< things to know, on standard error
};

/// Whether a verb makes sense while the settings document cannot be read.
enum class Settings {
    needed,    ///< no: it is refused, and the refusal says what to do
    not_needed ///< yes: it runs, and a note tells of the document
};

using Run = std::function<Answer(const Context&)>;

/// One command. A new one is a new row in the table of its group.
struct Verb {
    std::string_view name;
    std::string_view summary;     ///< one line, for the list of commands
    std::string_view description; ///< whole sentences, for its help
    std::string_view examples;    ///< lines that can be typed
    Run (*define)(CLI::App&);     ///< adds its options and arguments
    Settings settings = Settings::needed;
};

/// Commands that share a first word; with an empty name they stand alone.
struct Group {
    std::string_view name;
    std::string_view summary;
    std::span<const Verb> verbs;
};

std::span<const Group> groups();

// One table a file.
std::span<const Verb> connection_verbs();
std::span<const Verb> client_verbs();
std::span<const Verb> terminal_verbs();
std::span<const Verb> device_verbs();
std::span<const Verb> power_verbs();
std::span<const Verb> update_verbs();
std::span<const Verb> volume_verbs();
std::span<const Verb> sound_verbs();
std::span<const Verb> network_verbs();
std::span<const Verb> display_verbs();
std::span<const Verb> start_verbs();

} // namespace qvtc::qvtcctl
