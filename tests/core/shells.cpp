#include "core/shells.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::test {

std::string output_of(const char* shell, const std::string& text) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return "no pipe";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const char* const arguments[] = {"sh", "-c", text.c_str(), nullptr};
    pid_t child = 0;
    const int error =
        posix_spawn(&child, shell, &actions, nullptr, const_cast<char* const*>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::string output;
    char block[4096];
    for (ssize_t count = 0; error == 0 && (count = read(ends[0], block, sizeof block)) > 0;)
        output.append(block, static_cast<std::size_t>(count));
    close(ends[0]);
    if (error == 0) waitpid(child, nullptr, 0);
    return output;
}

} // namespace qvtc::test
