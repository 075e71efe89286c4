#pragma once

#include <atomic>
#include <csignal>
#include <sys/time.h>

namespace qvtc::test {

/// Interrupts this process with SIGALRM every few milliseconds for as long as it lives. The
/// handler is set without SA_RESTART, so that every waiting call fails with EINTR.
class Alarms {
  public:
    explicit Alarms(int milliseconds) {
        count_ = 0;
        struct sigaction action {};
        action.sa_handler = [](int) { ++count_; };
        sigaction(SIGALRM, &action, &former_);
        const suseconds_t pause = milliseconds * 1000;
        const itimerval interval{{0, pause}, {0, pause}};
        setitimer(ITIMER_REAL, &interval, nullptr);
    }
    Alarms(const Alarms&) = delete;
    Alarms& operator=(const Alarms&) = delete;
    ~Alarms() {
        const itimerval none{};
        setitimer(ITIMER_REAL, &none, nullptr);
        sigaction(SIGALRM, &former_, nullptr);
    }

    /// How many there have been.
    int count() const { return count_; }

  private:
    inline static std::atomic<int> count_ = 0;
    struct sigaction former_ {};
};

} // namespace qvtc::test
