#include "qvplugin/program.hpp"

#include "support/support.hpp"

#include <cstdlib>
#include <ostream>

#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

constexpr const char* installed = "/usr/local/bin/qvplugin";

int status_of(int wait_status) {
    return WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
}

} // namespace

InstalledProgram::InstalledProgram(const std::filesystem::path& program) {
    std::filesystem::remove(installed);
    std::filesystem::remove_all("/var/lib/qvplugin");
    std::filesystem::create_symlink(program, installed);
}

InstalledProgram::~InstalledProgram() { std::filesystem::remove(installed); }

void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << outcome.status << ' ' << testing::PrintToString(outcome.output) << ' '
            << testing::PrintToString(outcome.errors);
}

Outcome run(const std::string& command) {
    write_file("/tmp/command", command);
    Outcome outcome{};
    outcome.errors = capture_stderr([&] {
        outcome.output = capture_stdout(
            [&] { outcome.status = status_of(std::system("bash /tmp/command </dev/null")); });
    });
    return outcome;
}

pid_t start(const std::string& command, const std::string& key, const std::string& text) {
    const pid_t process = fork();
    if (process == 0) {
        execl(QVPLUGIN_PROGRAM, "qvplugin", command.c_str(), key.c_str(), text.c_str(), nullptr);
        _exit(127);
    }
    return process;
}

int ended(pid_t process) {
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status_of(status);
}

} // namespace qvtc::test
