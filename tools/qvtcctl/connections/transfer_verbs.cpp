#include "qvtcctl/base/input_file.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/advice.hpp"
#include "qvtcctl/connections/connection_words.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/connections/transfer.hpp"
#include "qvtcctl/verb/change_lock.hpp"
#include "qvtcctl/verb/settings_document.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>
#include <span>

#include <fmt/format.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view standard_input = "-";

// An export of all connections with every field full takes 1.3 MB, and 2.3 MB at worst, when every
// character is one that must be escaped.
constexpr std::size_t longest_import = 4UL << 20;

[[noreturn]] void refuse_input(const std::string& name, const std::string& why) {
    throw Refusal(ExitCode::bad_usage, fmt::format("{} {}.", name, why));
}

std::string read_import(const std::string& path) {
    const bool is_file = !path.empty() && path != standard_input;
    const std::string name = is_file ? fmt::format("\"{}\"", printable(path)) : "standard input";
    std::optional<InputFile> file;
    if (is_file) file.emplace(path);
    if (file && !file->is_open()) refuse_input(name, "cannot be read: " + file->fault());
    std::string text = read_up_to(file ? file->descriptor() : STDIN_FILENO, longest_import);
    if (errno != 0) refuse_input(name, fmt::format("cannot be read: {}", std::strerror(errno)));
    if (text.size() > longest_import)
        refuse_input(name, fmt::format("is longer than {} MB, the most that is read",
                                       longest_import >> 20U));
    return text;
}

std::vector<ImportStep> plan(const StoredConnections& connections, const std::string& file,
                             bool unchecked, bool replace) {
    try {
        const std::string text = read_import(file);
        const auto strictness = unchecked ? Strictness::carrying_only : Strictness::whole;
        return plan_import(connections.records(), parse_import(text, strictness), replace);
    } catch (const Refusal& refusal) {
        throw Refusal(refusal.code(), fmt::format("{} Nothing was stored.", refusal.what()));
    }
}

void undo(const StoredConnections& connections, const ImportStep& step) {
    if (step.previous) {
        connections.store(*step.type, *step.previous);
    } else {
        connections.remove(step.id);
    }
}

/// Undoes the steps, the last one first; false when one of them could not be undone.
bool undo_all(const StoredConnections& connections, std::span<const ImportStep> steps) {
    try {
        for (std::size_t i = steps.size(); i-- > 0;) {
            if (steps[i].action != Action::keep) undo(connections, steps[i]);
        }
        return true;
    } catch (const Refusal&) {
        return false;
    }
}

/// Stores them all, or none: when one is not taken, those before it are put back.
void carry_out(const StoredConnections& connections, const std::vector<ImportStep>& steps) {
    std::size_t begun = 0;
    try {
        for (const ImportStep& step : steps) {
            ++begun;
            if (step.action != Action::keep) connections.store(*step.type, step.record);
        }
    } catch (const Refusal& refusal) {
        // The one that failed may have been stored in part, so it is undone as well.
        const bool undone = undo_all(connections, std::span(steps).first(begun));
        throw Refusal(refusal.code(),
                      fmt::format("{} {}", refusal.what(),
                                  undone ? "Nothing was stored."
                                         : "The connections before it could not all be restored: "
                                           "compare \"qvtcctl connection list\" with the file."));
    }
}

long count(const std::vector<ImportStep>& steps, Action action) {
    return std::count_if(steps.begin(), steps.end(),
                         [action](const ImportStep& step) { return step.action == action; });
}

std::string_view name_of(Action action) {
    switch (action) {
    case Action::add:
        return "added";
    case Action::replace:
        return "replaced";
    case Action::keep:
        return "unchanged";
    }
    return "";
}

bool has_password(const Record& record) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].kind == Kind::password && !record[i].empty()) return true;
    }
    return false;
}

std::string step_text(const ImportStep& step) {
    std::string line =
        fmt::format("  {:<9}  {}", name_of(step.action), label_of(step.id, step.record));
    if (step.wished_id) line += fmt::format(", because {} is taken", *step.wished_id);
    return line + "\n";
}

Json step_json(const ImportStep& step) {
    Json map = json_map();
    add(map, "action", name_of(step.action));
    add_number(map, "id", step.id);
    if (step.wished_id) add_number(map, "idInFile", *step.wished_id);
    add(map, "name", step.record.name());
    return map;
}

/// What "add" and "set" would say of the connections that are new or changed.
std::vector<std::string> notes_on(const std::vector<ImportStep>& steps) {
    std::vector<std::size_t> every_field(fields.size());
    std::iota(every_field.begin(), every_field.end(), std::size_t{0});
    std::vector<std::string> notes;
    for (const ImportStep& step : steps) {
        if (step.action == Action::keep) continue;
        for (const std::string& note : advice_on(*step.type, step.record, every_field)) {
            notes.push_back(fmt::format("Connection {}: {}", label_of(step.id, step.record), note));
        }
    }
    return notes;
}

Answer import_answer(const std::vector<ImportStep>& steps, bool only_shown) {
    const long added = count(steps, Action::add);
    const long replaced = count(steps, Action::replace);
    const long kept = count(steps, Action::keep);
    Answer answer;
    answer.text =
        only_shown ? fmt::format("Dry run: {} to add, {} to replace, {} unchanged.\n", added,
                                 replaced, kept)
                   : fmt::format("{} added, {} replaced, {} unchanged.\n", added, replaced, kept);
    Json list = json_list();
    for (const ImportStep& step : steps) {
        answer.text += step_text(step);
        append(list, step_json(step));
    }
    answer.json = json_map();
    add_number(answer.json, "added", added);
    add_number(answer.json, "replaced", replaced);
    add_number(answer.json, "unchanged", kept);
    add_flag(answer.json, "stored", !only_shown);
    add(answer.json, "connections", std::move(list));
    answer.notes = notes_on(steps);
    Json notes = json_list();
    for (const std::string& note : answer.notes) append(notes, json_text(note));
    add(answer.json, "notes", std::move(notes));
    return answer;
}

const Argument file_argument = optional_argument("FILE", "the file; - or nothing: standard input");
const Argument replace_flag = flag("--replace", "replace connections that have the same number");
const Argument unchecked_flag =
    flag("--unchecked", "refuse only what cannot be stored, not what clients cannot use");
const Argument dry_run_flag = flag("--dry-run", "only show what would be done");
const Argument show_passwords_flag =
    flag("--show-passwords", "write passwords too, in the form in which they are stored");

Answer run_connection_import(const Request& request) {
    const StoredConnections connections(request.chatter());
    const ChangeLock lock;
    const std::vector<ImportStep> steps =
        plan(connections, request.text(file_argument), request.has(unchecked_flag),
             request.has(replace_flag));
    if (request.has(dry_run_flag)) return import_answer(steps, true);
    const std::string kept_as = set_unreadable_document_aside();
    const std::string note =
        kept_as.empty() ? ""
                        : fmt::format("The settings document could not be read. It is kept as "
                                      "{}, and a new one was begun.",
                                      kept_as);
    try {
        carry_out(connections, steps);
    } catch (const Refusal& refusal) {
        if (note.empty()) throw;
        throw Refusal(refusal.code(), fmt::format("{} {}", refusal.what(), note));
    }
    Answer answer = import_answer(steps, false);
    if (!note.empty()) answer.add_note(note);
    return answer;
}

Answer run_connection_export(const Request& request) {
    const ConnectionType* type = request.text(only_type_argument).empty()
                                     ? nullptr
                                     : &require_type(request.text(only_type_argument));
    const StoredConnections connections(request.chatter());
    const std::vector<Record> records =
        type == nullptr ? connections.records() : connections.records(*type);
    Answer answer;
    answer.text = exported_text(records, request.has(show_passwords_flag));
    answer.json.reset(json_tokener_parse(answer.text.c_str()));
    if (!request.has(show_passwords_flag) &&
        std::any_of(records.begin(), records.end(), has_password)) {
        answer.notes = {"passwords were left out. Give --show-passwords to write them too."};
    }
    return answer;
}

} // namespace

const Verb verbs::connection_import{
    .name = "import",
    .summary = "Store connections from a file",
    .description = "Stores the connections of a file that \"export\" has written, or of "
                   "standard input for \"-\" or no file. At most 4 MB are read. Everything is "
                   "checked first: when one value is refused, nothing is stored. A connection "
                   "keeps its number when that is free, and gets a new one when it is taken; "
                   "with --replace it replaces the connection that has the number, and a file "
                   "without passwords leaves that one's passwords as they are. A connection "
                   "that is stored already with the same values is left alone. When the "
                   "settings document cannot be read, it is kept under another name, and a new "
                   "one is begun.",
    .examples = {"qvtcctl connection import connections.json",
                 "ssh term1 qvtcctl connection export | qvtcctl connection import --replace"},
    .arguments = {file_argument, replace_flag, unchecked_flag, dry_run_flag},
    .settings = Settings::not_needed,
    .run = run_connection_import,
};

const Verb verbs::connection_export{
    .name = "export",
    .summary = "Write connections as JSON",
    .description = "Writes the stored connections, all of them or those of one type, as JSON "
                   "for \"import\". Passwords are left out unless --show-passwords is given; "
                   "they are then written in the form in which they are stored, which is an "
                   "encoding and not encryption.",
    .examples = {"qvtcctl connection export > connections.json",
                 "qvtcctl connection export rdp --show-passwords > backup.json"},
    .arguments = {only_type_argument, show_passwords_flag},
    .run = run_connection_export,
};

} // namespace qvtc::qvtcctl
