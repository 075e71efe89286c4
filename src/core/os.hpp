#pragma once

#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qvtc {

/// The narrow seam between the workers and the operating system, replaceable
/// in a scope so that a watch of ten seconds or a failed pipe is a fast test.
class Os {
  public:
    Os() = default;
    Os(const Os&) = delete;
    Os& operator=(const Os&) = delete;
    virtual ~Os() = default;

    /// Runs a command text under /bin/sh and waits; the status of system().
    virtual int run(const std::string& command) = 0;
    /// The standard output of a command text: at most `limit` bytes of it, up to
    /// the first NUL. Empty when the command could not be run or printed nothing.
    virtual std::string capture(const std::string& command, std::size_t limit) = 0;
    /// The lines that a command text prints, without their newlines; nothing,
    /// with errno set, when it could not be started.
    virtual std::optional<std::vector<std::string>> lines(const std::string& command) = 0;
    virtual bool exists(const char* path) = 0;
    virtual std::time_t now() = 0;
    virtual void sleep(unsigned seconds) = 0;
    /// Starts a thread that is never joined and leaves nothing behind when it
    /// ends; false when there is none to be had.
    virtual bool start_thread(std::function<void()> body) = 0;
};

/// The system in force: the real one, unless a ScopedOs stands.
Os& os();

/// Puts another system in force, for every thread, as long as it lives.
class ScopedOs {
  public:
    explicit ScopedOs(Os& replacement);
    ScopedOs(const ScopedOs&) = delete;
    ScopedOs& operator=(const ScopedOs&) = delete;
    ~ScopedOs();

  private:
    Os* former_;
};

} // namespace qvtc
