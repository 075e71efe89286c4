#include "qvtcctl/clients/launcher.hpp"

#include "qvtcctl/base/followed_file.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/clients/client_words.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr auto longest_watch = 30s;

bool has_other_threads() {
    std::error_code failed;
    std::size_t count = 0;
    std::filesystem::directory_iterator thread("/proc/self/task", failed);
    for (; !failed && thread != std::filesystem::directory_iterator(); thread.increment(failed)) {
        ++count;
    }
    return count > 1;
}

void stay_for_the_watcher() {
    const auto end = std::chrono::steady_clock::now() + longest_watch;
    while (has_other_threads() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(100ms);
    }
}

// A client asks for missing passwords on the terminal if it has one; here nobody would see it.
void leave_the_terminal() {
    setsid();
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nowhere < 0) return;
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

void let_client_talk(unsigned id) {
    const ConnectionType* type = type_of_id(id);
    const TalkRequest* request = type == nullptr ? nullptr : talk_request(*type);
    if (request != nullptr) setenv(request->variable, request->value, 0);
}

[[noreturn]] void launch_and_watch(unsigned id, Chatter chatter, int answer_to) {
    leave_the_terminal();
    char launched = 0;
    {
        // The library starts clients on the screen of its caller, and looks for them on :0.
        setenv("DISPLAY", ":0", 1);
        let_client_talk(id);
        const Quiet quiet(chatter);
        launched = qvlaunchclient(id) == 0 ? 1 : 0;
    }
    // The caller's standard error must not stay open here when the caller has gone.
    dup2(STDOUT_FILENO, STDERR_FILENO);
    const ssize_t written = write(answer_to, &launched, sizeof launched);
    close(answer_to);
    if (written == sizeof launched) stay_for_the_watcher();
    _exit(0);
}

bool read_answer(int from) {
    char launched = 0;
    ssize_t count = 0;
    do {
        count = read(from, &launched, sizeof launched);
    } while (count < 0 && errno == EINTR);
    return count == sizeof launched && launched == 1;
}

/// Whether the library says that it has started the client.
bool launch_in_own_process(unsigned id, Chatter chatter) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        launch_and_watch(id, chatter, ends[1]);
    }
    close(ends[1]);
    const bool launched = child > 0 && read_answer(ends[0]);
    close(ends[0]);
    return launched;
}

} // namespace

void Launcher::launch(unsigned id) const {
    if (launch_in_own_process(id, chatter_)) return;
    throw Refusal(
        ExitCode::not_done,
        fmt::format("the library did not start connection {}. {} says why.", id, system_log));
}

std::string Launcher::status(unsigned id) const {
    // Of a FIFO the library would wait for a writer for ever; this refuses it.
    const std::string client_log(require_type_of_id(id).log);
    if (!client_log.empty()) file_tail(client_log, 0);
    Json answer;
    {
        const Quiet quiet(chatter_);
        answer.reset(qvgetclientstatus(id));
    }
    return answer ? text_member(answer.get(), "status") : "";
}

void Launcher::cancel_rdp() const {
    const Quiet quiet(chatter_);
    qvcancelconnect();
}

} // namespace qvtc::qvtcctl
