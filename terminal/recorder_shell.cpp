// /bin/sh of the disposable terminal: notes the exact text after -c, then becomes bash, which is
// what a terminal's sh is, or the shell that QVTC_SHELL names; the name it is called by tells bash
// to be sh.
//
// A note is "PID BIRTH CAPTURED\0PARENT'S PROGRAM\0TEXT\0". BIRTH, the process's start time in
// ticks since boot, tells two processes with one id apart; CAPTURED is 1 when standard output is
// a pipe other than the parent's own.

#include "notes.hpp"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>

namespace {

using qvtc::terminal::append_note;
using qvtc::terminal::link_target;

/// The text after -c, or a null pointer if the shell was called for something else.
const char* command_text(int count, char** arguments) {
    if (count < 3 || std::strcmp(arguments[1], "-c") != 0) return nullptr;
    // Newer C libraries separate the text from the option.
    if (count > 3 && std::strcmp(arguments[2], "--") == 0) return arguments[3];
    return arguments[2];
}

/// Field 22 of /proc/self/stat; fields are counted from behind the program's name.
std::string birth() {
    std::array<char, 1024> text{};
    const int file = open("/proc/self/stat", O_RDONLY | O_CLOEXEC);
    if (file < 0) return "0";
    const ssize_t length = read(file, text.data(), text.size());
    close(file);
    std::string_view rest(text.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    rest.remove_prefix(rest.rfind(')') + 1);
    for (int field = 2; field < 22; ++field) rest.remove_prefix(rest.find(' ') + 1);
    return std::string(rest.substr(0, rest.find(' ')));
}

void record(const char* text) {
    const std::string log = std::string(qvtc::terminal::state_directory) + "/commands";
    const int file = open(log.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0) return; // without a log, nothing is recorded
    const std::string parent = "/proc/" + std::to_string(getppid());
    const std::string output = link_target("/proc/self/fd/1");
    const bool captured = output.starts_with("pipe:") && output != link_target(parent + "/fd/1");
    std::string note = std::to_string(getpid()) + ' ' + birth() + (captured ? " 1" : " 0");
    note += '\0';
    note += link_target(parent + "/exe");
    note += '\0';
    note += text;
    note += '\0';
    append_note(file, note);
    close(file);
}

} // namespace

int main(int count, char** arguments) {
    if (const char* text = command_text(count, arguments)) record(text);
    const char* const chosen = std::getenv("QVTC_SHELL");
    execv(chosen != nullptr ? chosen : "/bin/bash", arguments);
    return 127;
}
