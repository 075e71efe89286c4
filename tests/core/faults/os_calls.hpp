#pragma once

#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace qvtc::test {

/// Stands between this program and some calls of the C library for as long as it lives: notes
/// them and does to them what the test asks for. The calls are posix_spawn, fork, pthread_create,
/// write, fsync, posix_fallocate ("fallocate"), rename and time. One at a time, for all threads.
class OsCalls {
  public:
    OsCalls();
    OsCalls(const OsCalls&) = delete;
    OsCalls& operator=(const OsCalls&) = delete;
    ~OsCalls();

    /// "write PATH", "fsync PATH", "fallocate PATH", "rename PATH PATH" in their order, repetitions
    /// in a row once.
    std::vector<std::string> on_files() const;

    /// All further calls of this name fail with `error`.
    OsCalls& fail(const std::string& name, int error);
    /// The next call of this name with that many before it happens after `action`.
    OsCalls& before(const std::string& name, std::function<void()> action, int calls_before = 0);
    /// The first write of every two is interrupted, and no other takes more than `bytes`.
    OsCalls& hamper_writes(std::size_t bytes);
    /// The time of day from now on; it stands still.
    OsCalls& set_time(std::time_t now);

    // For the calls themselves.
    /// Notes a call, runs what is to happen before it, and says with which error it must fail.
    int enter(const std::string& name, const std::string& on_file = "");
    /// How much of so many bytes to write; nothing for an interruption.
    std::optional<std::size_t> room_for(std::size_t bytes);
    std::optional<std::time_t> now() const;

  private:
    struct Action {
        std::function<void()> run;
        int calls_before;
    };
    mutable std::mutex mutex_;
    std::vector<std::string> on_files_;
    std::map<std::string, int> errors_;
    std::map<std::string, Action> actions_;
    std::optional<std::size_t> most_written_;
    bool interrupted_ = false;
    std::optional<std::time_t> now_;
};

} // namespace qvtc::test
