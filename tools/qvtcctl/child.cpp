#include "qvtcctl/child.hpp"

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
                 const std::function<void(long seconds)>& tell) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) return failure;
    if (child == 0) call_and_exit(call, chatter);
    int status = 0;
    while (!has_ended(child, status)) {
        const auto taken = std::chrono::steady_clock::now() - start;
        tell(std::chrono::duration_cast<std::chrono::seconds>(taken).count());
        std::this_thread::sleep_for(50ms);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : failure;
}

} // namespace qvtc::qvtcctl
