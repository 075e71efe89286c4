#include "qvtcctl/verb/quiet.hpp"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

// Close-on-exec, so that no client that the library starts keeps the caller's pipe open.
int kept_aside(int descriptor) { return fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1); }

void put_back(int saved, int descriptor) {
    if (saved < 0) return;
    dup2(saved, descriptor);
    close(saved);
}

} // namespace

Quiet::Quiet(Chatter chatter)
    : saved_output_(kept_aside(STDOUT_FILENO)), saved_error_(kept_aside(STDERR_FILENO)) {
    if (chatter == Chatter::to_standard_error) {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        return;
    }
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

Quiet::~Quiet() {
    // What the library printed may still lie in the streams' buffers.
    std::fflush(stdout);
    std::fflush(stderr);
    put_back(saved_output_, STDOUT_FILENO);
    put_back(saved_error_, STDERR_FILENO);
}

} // namespace qvtc::qvtcctl
