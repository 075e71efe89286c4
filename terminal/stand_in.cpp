// Takes the place of a program in the disposable terminal: notes its arguments and does what the
// test left for it in the directory /run/disposable-terminal/stand-ins/NAME:
//   calls          the notes, "COUNT\0ARGUMENT\0...", one for each call, without the name
//   count          as many bytes as there were calls
//   script/NAME    run with the arguments instead of what follows
//   output.N       printed by call N; the one with the highest number by every later call, too
//   errors         printed on standard error
//   status         the exit status, or "stays": run until killed

#include "notes.hpp"

#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/auxv.h>

namespace {

/// The whole file, or nothing if it does not exist.
std::string contents(const std::string& path) {
    std::string text;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return text;
    std::array<char, 65536> block{};
    ssize_t length = 0;
    while ((length = read(file, block.data(), block.size())) > 0) {
        text.append(block.data(), static_cast<std::size_t>(length));
    }
    close(file);
    return text;
}

void print(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0) return; // the reader has gone
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Appends to a file of the stand-in; returns where the addition ends, which differs for every
/// call, however many run at once.
off_t append(const std::string& path, const std::string& note) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file < 0) _exit(125);
    qvtc::terminal::append_note(file, note);
    const off_t end = lseek(file, 0, SEEK_CUR);
    close(file);
    return end;
}

/// Notes the arguments; returns the number of this call, from 1.
off_t note_call(const std::string& directory, int count, char** arguments) {
    std::string note = std::to_string(count - 1) + '\0';
    for (int i = 1; i < count; ++i) note.append(arguments[i]) += '\0';
    append(directory + "/calls", note);
    return append(directory + "/count", "x");
}

std::string output_of(const std::string& directory, off_t call) {
    for (; call > 0; --call) {
        const std::string path = directory + "/output." + std::to_string(call);
        if (access(path.c_str(), R_OK) == 0) return contents(path);
    }
    return {};
}

/// The name under which the program was started, whatever it was told in argv[0].
std::string own_name() {
    // NOLINTNEXTLINE: the kernel hands the address over as a number
    const auto* path = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    const std::string_view text(path);
    return std::string(text.substr(text.rfind('/') + 1));
}

} // namespace

int main(int count, char** arguments) {
    const std::string name = own_name();
    const std::string directory =
        std::string(qvtc::terminal::state_directory) + "/stand-ins/" + name;
    const off_t call = note_call(directory, count, arguments);
    const std::string script = directory + "/script/" + name;
    if (access(script.c_str(), X_OK) == 0) {
        execv(script.c_str(), arguments);
        return 126;
    }
    print(STDOUT_FILENO, output_of(directory, call));
    print(STDERR_FILENO, contents(directory + "/errors"));
    const std::string status = contents(directory + "/status");
    while (status == "stays") pause();
    return std::atoi(status.c_str());
}
