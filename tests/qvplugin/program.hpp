#pragma once

#include <filesystem>
#include <string>

#include <sys/types.h>

namespace qvtc::test {

inline constexpr const char* database_path = "/var/lib/qvplugin/values.db";

/// Puts a program in place of the terminal's qvplugin, with an empty store, for as long as it
/// lives.
class InstalledProgram {
  public:
    explicit InstalledProgram(const std::filesystem::path& program);
    InstalledProgram(const InstalledProgram&) = delete;
    InstalledProgram& operator=(const InstalledProgram&) = delete;
    ~InstalledProgram();
};

struct Outcome {
    int status;
    std::string output;
    std::string errors;

    bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream);

/// Runs a bash command, in which the installed program is "qvplugin".
Outcome run(const std::string& command);

/// Starts the program that was built, with these arguments, without waiting for it.
pid_t start(const std::string& command, const std::string& key, const std::string& text);

/// Its exit status, or 128 + the signal that ended it.
int ended(pid_t process);

} // namespace qvtc::test
