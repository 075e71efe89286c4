#include "qvtcctl/verb/child.hpp"

#include "qvtcctl/base/console.hpp"

#include <cerrno>
#include <chrono>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr int failure = 255;

[[noreturn]] void call_and_exit(const std::function<int()>& call, Chatter chatter) {
    int result = failure;
    {
        const Quiet quiet(chatter);
        result = call();
    }
    _exit(result & 0xff);
}

/// Waits a moment for the child; true when it has ended.
bool has_ended(pid_t child, int& status) {
    const pid_t ended = waitpid(child, &status, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
    if (ended < 0) status = failure << 8;
    return true;
}

} // namespace

int run_in_child(const std::function<int()>& call, Chatter chatter,
                 const WhileWaiting& while_waiting) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) return failure;
    if (child == 0) call_and_exit(call, chatter);
    int status = 0;
    while (!has_ended(child, status)) {
        const auto taken = std::chrono::steady_clock::now() - start;
        while_waiting(std::chrono::duration_cast<std::chrono::seconds>(taken).count());
        std::this_thread::sleep_for(50ms);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : failure;
}

WhileWaiting said_after_a_moment(const std::string& line) {
    return [line, said = false](long seconds) mutable {
        if (said || seconds < 1) return;
        write_error(line + "\n");
        said = true;
    };
}

} // namespace qvtc::qvtcctl
