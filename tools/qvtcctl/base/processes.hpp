#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace qvtc::qvtcctl {

struct Process {
    pid_t pid;
    std::vector<std::string> arguments;
    std::vector<std::string> environment; ///< what it was started with

    bool operator==(const Process&) const = default;
};

/// The living processes whose name begins so; zombies are not among them, nor is one that ends
/// while it is looked at. "proc" is where the system shows its processes.
std::vector<Process> running_processes(std::string_view name_begins,
                                       const std::filesystem::path& proc = "/proc");

/// Waits until they have ended; returns those that still run.
std::vector<Process> wait_for_end(std::vector<Process> processes,
                                  std::chrono::milliseconds longest);

} // namespace qvtc::qvtcctl
