#include "support/commands.hpp"

#include "support/files.hpp"
#include "support/records.hpp"

#include <ostream>
#include <set>
#include <string_view>

namespace qvtc::test {

namespace {

constexpr auto record = "/run/disposable-terminal/commands";

/// As terminal/recorder_shell.cpp writes it.
struct Note {
    std::string process; ///< process id and birth
    bool captured = false;
    std::string program;
    std::string text;
};

std::vector<Note> read_notes() {
    const std::string text = read_file(record);
    std::vector<Note> notes;
    for (std::string_view rest = text;;) {
        const auto head = take_field(rest);
        auto program = take_field(rest);
        auto command = take_field(rest);
        if (!head || !program || !command) return notes;
        const auto blank = head->rfind(' ');
        notes.push_back({head->substr(0, blank), head->substr(blank + 1) == "1",
                         std::move(*program), std::move(*command)});
    }
}

/// A program that was rebuilt while it runs is marked as deleted.
std::string without_mark(std::string program) {
    constexpr std::string_view mark = " (deleted)";
    if (program.ends_with(mark)) program.resize(program.size() - mark.size());
    return program;
}

std::vector<RecordedCommand> commands_of(const std::string& program) {
    std::vector<RecordedCommand> commands;
    std::set<std::string> seen;
    for (Note& note : read_notes()) {
        if (without_mark(std::move(note.program)) != program) continue;
        // A text that is itself only a call of sh is executed in place: the same process again.
        if (!seen.insert(note.process).second) continue;
        commands.push_back({std::move(note.text), note.captured});
    }
    return commands;
}

std::vector<std::string> texts_of(std::vector<RecordedCommand> commands) {
    std::vector<std::string> texts;
    for (RecordedCommand& command : commands) texts.push_back(std::move(command.text));
    return texts;
}

} // namespace

void PrintTo(const RecordedCommand& command, std::ostream* stream) {
    *stream << (command.captured ? "captured: " : "") << '"' << command.text << '"';
}

std::vector<RecordedCommand> recorded_command_details() {
    return commands_of(without_mark(std::filesystem::read_symlink("/proc/self/exe")));
}

std::vector<std::string> recorded_commands() { return texts_of(recorded_command_details()); }

std::vector<std::string> recorded_commands_of(const std::filesystem::path& program) {
    return texts_of(commands_of(std::filesystem::canonical(program)));
}

void forget_commands() { write_file(record, ""); }

} // namespace qvtc::test
