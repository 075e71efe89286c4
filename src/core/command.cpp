#include "core/command.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/descriptor.hpp"
#include "core/log.hpp"
#include "core/pipe_stream.hpp"
#include "core/text.hpp"

namespace qvtc {

namespace {

constexpr const char* shell_path = "/bin/sh";
constexpr int pipe_capacity = 131072;
constexpr std::size_t line_limit = 63;

/// Starts the shell with its standard output on `write_end`; 0, or the error
/// for which it did not start. Unlike fork this costs the same however much
/// memory the front-end uses.
int spawn_shell(const char* command, int /*read_end*/, int write_end, pid_t* child) {
    posix_spawn_file_actions_t actions;
    if (const int error = posix_spawn_file_actions_init(&actions); error != 0) return error;
    int error = posix_spawn_file_actions_adddup2(&actions, write_end, STDOUT_FILENO);
    if (error == 0) {
        const char* const arguments[] = {"sh", "-c", command, nullptr};
        error = posix_spawn(child, shell_path, &actions, nullptr,
                            const_cast<char* const*>(arguments), environ);
    }
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

/// In a forked child: becomes the shell, or returns. Nothing here but
/// async-signal-safe calls, as the front-end has threads.
void become_shell(const char* command, int read_end, int write_end) {
    ::close(read_end);
    if (write_end == STDOUT_FILENO) {
        fcntl(write_end, F_SETFD, 0);
    } else {
        if (dup2(write_end, STDOUT_FILENO) != STDOUT_FILENO) return;
        ::close(write_end);
    }
    execl(shell_path, "sh", "-c", command, static_cast<char*>(nullptr));
}

/// The same; where it fails, a fork that becomes the shell. In a child that
/// cannot, this returns the error.
int spawn_or_fork_shell(const char* command, int read_end, int write_end, pid_t* child) {
    const int error = spawn_shell(command, read_end, write_end, child);
    if (error == 0) return 0;
    *child = fork();
    if (*child > 0) return 0;
    // Deliberate: the child of a shell that cannot be started goes on in the
    // caller's code.
    if (*child == 0) become_shell(command, read_end, write_end);
    return error;
}

ssize_t read_some(int descriptor, char* into, std::size_t room) {
    ssize_t count = 0;
    do {
        count = read(descriptor, into, room);
    } while (count < 0 && errno == EINTR);
    return count;
}

/// Fills `output` until the command closes its end, or prints more than fits.
void read_all(int descriptor, char* output, std::size_t size) {
    std::size_t held = 0;
    while (held < size) {
        const ssize_t count = read_some(descriptor, output + held, size - held);
        if (count <= 0) return;
        held += static_cast<std::size_t>(count);
    }
    char overflow = 0;
    if (size > 0) read_some(descriptor, &overflow, 1);
}

// The streams of popen are read without stdio: it would give up, and drop what
// it has read, when a signal of the front-end's interrupts it.

std::string read_output(int descriptor) {
    std::string output;
    char block[4096];
    for (ssize_t count = 0; (count = read_some(descriptor, block, sizeof block)) > 0;)
        output.append(block, static_cast<std::size_t>(count));
    return output;
}

/// A line with its newline, or as much of it as `limit` allows.
std::string read_line(int descriptor, std::size_t limit) {
    std::string line;
    char c = 0;
    while (line.size() < limit && !line.ends_with('\n') && read_some(descriptor, &c, 1) == 1)
        line += c;
    return line;
}

Capture reap(pid_t child) {
    pid_t reaped = 0;
    do {
        reaped = waitpid(child, nullptr, 0);
    } while (reaped < 0 && errno == EINTR);
    return reaped > 0 ? Capture::reaped : Capture::nothing_to_reap;
}

template <typename Start>
Capture capture(Start start_shell, const char* command, char* output, std::size_t size) {
    std::memset(output, 0, size);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return Capture::not_started;
    Descriptor read_end(ends[0]);
    Descriptor write_end(ends[1]);
    fcntl(read_end.get(), F_SETPIPE_SZ, pipe_capacity); // a smaller pipe serves too

    pid_t child = -1;
    if (start_shell(command, read_end.get(), write_end.get(), &child) != 0)
        return Capture::not_started;
    write_end.close();
    read_all(read_end.get(), output, size);
    read_end.close();
    return reap(child);
}

} // namespace

Capture capture_output(const char* command, char* output, std::size_t size) {
    return capture(spawn_shell, command, output, size);
}

Capture capture_output_or_fork(const char* command, char* output, std::size_t size) {
    return capture(spawn_or_fork_shell, command, output, size);
}

std::optional<std::vector<std::string>> output_lines(const char* command) {
    PipeStream stream(command);
    if (!stream.is_open()) return std::nullopt;
    const std::string output = read_output(fileno(stream.get()));
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < output.size();) {
        const std::size_t end = std::min(output.find('\n', start), output.size());
        lines.push_back(c_text(output.substr(start, end - start)));
        start = end + 1;
    }
    return lines;
}

std::optional<std::string> first_line(const char* command) {
    PipeStream stream(command);
    if (!stream.is_open()) {
        log(Level::error, "@execmd popen error %s", std::strerror(errno));
        return std::nullopt;
    }
    errno = 0; // the end of the output is no error of the system's
    const std::string line = read_line(fileno(stream.get()), line_limit);
    if (line.empty()) {
        log(Level::error, "@execmd fgets error:%s", std::strerror(errno));
        return std::nullopt;
    }
    std::string text = remove_all(c_text(line), ' ');
    // Deliberate: a line of 63 characters, or one without a newline, loses a
    // character of its own here.
    if (!text.empty()) text.pop_back();
    return text;
}

} // namespace qvtc
