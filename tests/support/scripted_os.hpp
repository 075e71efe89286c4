#pragma once

#include "core/os.hpp"

#include <cerrno>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qvtc::test {

/// Takes the place of the operating system for as long as it lives: gives the answers that a
/// test left in it, and records what it was asked to do.
class ScriptedOs final : public Os {
  public:
    // --- The answers ---------------------------------------------------------------------

    std::deque<std::string> outputs;            ///< of the captures, in turn; then nothing
    std::map<std::string, std::string> replies; ///< of the captures of these texts, always
    std::optional<std::vector<std::string>> printed_lines; ///< none: could not be started
    int lines_error = ENOENT;                              ///< errno where there are none
    int status = 0;                                        ///< of every run
    std::set<std::string> files;                           ///< the files that exist
    std::time_t time = 1'700'000'000;                      ///< goes on by what is slept
    std::time_t clock_step = 0; ///< how much time passes between two looks at the clock
    bool has_threads = true;

    // --- The record ----------------------------------------------------------------------

    /// "run TEXT", "capture LIMIT TEXT", "lines TEXT", "sleep SECONDS", "thread", in order.
    std::vector<std::string> record;
    std::vector<std::function<void()>> threads; ///< bodies that were to be started

    // --- As the library sees it ----------------------------------------------------------

    int run(const std::string& command) override {
        record.push_back("run " + command);
        return status;
    }
    std::string capture(const std::string& command, std::size_t limit) override {
        record.push_back("capture " + std::to_string(limit) + ' ' + command);
        if (const auto reply = replies.find(command); reply != replies.end()) return reply->second;
        if (outputs.empty()) return {};
        std::string output = std::move(outputs.front());
        outputs.pop_front();
        return output;
    }
    std::optional<std::vector<std::string>> lines(const std::string& command) override {
        record.push_back("lines " + command);
        if (!printed_lines) errno = lines_error;
        return printed_lines;
    }
    bool exists(const char* path) override { return files.contains(path); }
    std::time_t now() override {
        time += clock_step;
        return time - clock_step;
    }
    void sleep(unsigned seconds) override {
        record.push_back("sleep " + std::to_string(seconds));
        time += seconds;
    }
    bool start_thread(std::function<void()> body) override {
        record.push_back("thread");
        if (has_threads) threads.push_back(std::move(body));
        return has_threads;
    }

  private:
    ScopedOs in_force_{*this};
};

} // namespace qvtc::test
