#include "qvtcctl/base/program.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds longest_run{3};

/// The environment of this program with the variable in it.
std::vector<char*> environment_with(std::string& variable) {
    const std::string start = variable.substr(0, variable.find('=') + 1);
    std::vector<char*> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!std::string_view(*entry).starts_with(start)) result.push_back(*entry);
    }
    result.push_back(variable.data());
    result.push_back(nullptr);
    return result;
}

std::optional<pid_t> start(std::vector<std::string>& words, std::string& variable, int output) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    std::vector<char*> environment = environment_with(variable);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    pid_t pid = 0;
    const int failed = posix_spawnp(&pid, arguments.front(), &actions, nullptr, arguments.data(),
                                    environment.data());
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? std::optional(pid) : std::nullopt;
}

/// Everything up to the end of the output, or nothing when that takes too long.
std::optional<std::string> read_in_time(int from) {
    std::string text;
    const auto end = Clock::now() + longest_run;
    std::array<char, 4096> buffer{};
    while (true) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{from, POLLIN, 0};
        const int ready = left > 0 ? poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return std::nullopt;
        const ssize_t count = read(from, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

bool ended_well(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<ProgramOutput> run_program(std::vector<std::string> words, std::string variable) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
    const std::optional<pid_t> pid = start(words, variable, ends[1]);
    close(ends[1]);
    std::optional<std::string> text = pid ? read_in_time(ends[0]) : std::nullopt;
    close(ends[0]);
    if (!pid) return std::nullopt;
    if (!text) kill(*pid, SIGKILL);
    const bool succeeded = ended_well(*pid);
    if (!text) return std::nullopt;
    return ProgramOutput{std::move(*text), succeeded};
}

} // namespace qvtc::qvtcctl
