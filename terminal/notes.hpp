#pragma once

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <sys/types.h>
#include <unistd.h>

/// What the programs inside the disposable terminal have in common. They run once for every
/// command, so they use no streams and allocate little.
namespace qvtc::terminal {

inline constexpr const char* state_directory = "/run/disposable-terminal";

/// Target of a symbolic link, or "?" if it cannot be read.
inline std::string link_target(const std::string& path) {
    std::array<char, 4096> target{};
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    return length < 0 ? "?" : std::string(target.data(), static_cast<std::size_t>(length));
}

/// Appends a note with one write, so that notes of several processes do not mix (O_APPEND). A lost
/// note would falsify a test, so a failure ends the program.
inline void append_note(int file, const std::string& note) {
    ssize_t written = 0;
    do {
        written = write(file, note.data(), note.size());
    } while (written < 0 && errno == EINTR);
    if (written != static_cast<ssize_t>(note.size())) {
        constexpr char message[] = "disposable terminal: a call could not be noted\n";
        (void)!write(STDERR_FILENO, message, sizeof message - 1);
        _exit(125);
    }
}

} // namespace qvtc::terminal
