#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace qvtc::test {

/// One text that was given to /bin/sh after -c.
struct RecordedCommand {
    std::string text;
    bool captured = false; ///< its output went into a pipe of its own, as with popen

    bool operator==(const RecordedCommand&) const = default;
};
void PrintTo(const RecordedCommand& command, std::ostream* stream);

/// The exact texts that this program gave to the shell since the test began or `forget_commands`
/// was called, in the order in which the shells started. A command of another thread is recorded
/// once its shell runs, so wait until it is there.
std::vector<std::string> recorded_commands();

/// The same with details.
std::vector<RecordedCommand> recorded_command_details();

/// The texts that another program gave to the shell, for tests that start one.
std::vector<std::string> recorded_commands_of(const std::filesystem::path& program);

/// Empties the record.
void forget_commands();

} // namespace qvtc::test
