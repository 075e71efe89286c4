// Capturing a command's output against a bare posix_spawn of the same shell,
// with more and more of the caller's memory in use: a fork would pay for it.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <spawn.h>
#include <sys/wait.h>
#include <vector>

#include "core/exports.hpp"
#include "goals.hpp"

extern char** environ;

namespace {

constexpr const char* command = "echo 1";
constexpr std::size_t megabyte = 1024UL * 1024UL;

/// Memory of the front-end that is really in use.
class Resident {
  public:
    explicit Resident(std::int64_t megabytes)
        : bytes_(static_cast<std::size_t>(megabytes) * megabyte, '\1') {
        benchmark::DoNotOptimize(bytes_.data());
    }

  private:
    std::vector<char> bytes_;
};

void capture(benchmark::State& state) {
    const Resident resident(state.range(0));
    char output[64];
    for (auto _ : state) benchmark::DoNotOptimize(systemex(command, output, sizeof output));
}

void bare_spawn(benchmark::State& state) {
    const Resident resident(state.range(0));
    posix_spawn_file_actions_t silent;
    posix_spawn_file_actions_init(&silent);
    posix_spawn_file_actions_addopen(&silent, 1, "/dev/null", 1, 0);
    const char* const arguments[] = {"sh", "-c", command, nullptr};
    for (auto _ : state) {
        pid_t child = 0;
        if (posix_spawn(&child, "/bin/sh", &silent, nullptr, const_cast<char* const*>(arguments),
                        environ) != 0) {
            std::abort();
        }
        waitpid(child, nullptr, 0);
    }
    posix_spawn_file_actions_destroy(&silent);
}

BENCHMARK(capture)->Arg(0)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(bare_spawn)->Arg(0)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

namespace qvtc::bench {

const std::vector<Goal>& capture_goals() {
    static const std::vector<Goal> goals = [] {
        std::vector<Goal> made;
        for (const char* const size : {"0", "100", "1000"}) {
            made.push_back({std::string("capture / bare spawn, with ") + size + " MB resident",
                            std::string("capture/") + size + "/real_time",
                            std::string("bare_spawn/") + size + "/real_time", 1.1});
        }
        return made;
    }();
    return goals;
}

} // namespace qvtc::bench
