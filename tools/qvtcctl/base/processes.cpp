#include "qvtcctl/base/processes.hpp"

#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

namespace fs = std::filesystem;

/// What can be read of a file of a process, which may end at any moment: then the files are gone,
/// or are there and cannot be read. A stream would throw.
std::string contents(const fs::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return "";
    std::string text;
    std::array<char, 4096> block{};
    while (true) {
        const ssize_t count = read(file, block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        text.append(block.data(), static_cast<std::size_t>(count));
    }
    close(file);
    return text;
}

/// The state stands behind the name, which is in parentheses and may hold any character.
bool lives(const fs::path& process) {
    const std::string stat = contents(process / "stat");
    const std::size_t end = stat.rfind(") ");
    return end != std::string::npos && stat.compare(end + 2, 1, "Z") != 0;
}

std::vector<std::string> texts_in(const fs::path& path) {
    std::vector<std::string> texts;
    std::string text;
    for (const char c : contents(path)) {
        if (c == '\0') {
            texts.push_back(std::move(text));
            text.clear();
        } else {
            text += c;
        }
    }
    return texts;
}

std::vector<fs::path> entries_of(const fs::path& directory) {
    std::vector<fs::path> entries;
    std::error_code failed;
    fs::directory_iterator entry(directory, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        entries.push_back(entry->path());
    }
    return entries;
}

bool runs(const Process& process) { return lives("/proc/" + std::to_string(process.pid)); }

} // namespace

std::vector<Process> running_processes(std::string_view name_begins, const fs::path& proc) {
    std::vector<Process> found;
    for (const fs::path& entry : entries_of(proc)) {
        const std::optional<unsigned> pid = parse_number(entry.filename().string());
        if (!pid || !contents(entry / "comm").starts_with(name_begins) || !lives(entry)) continue;
        found.push_back(
            {static_cast<pid_t>(*pid), texts_in(entry / "cmdline"), texts_in(entry / "environ")});
    }
    std::sort(found.begin(), found.end(),
              [](const Process& a, const Process& b) { return a.pid < b.pid; });
    return found;
}

std::vector<Process> wait_for_end(std::vector<Process> processes,
                                  std::chrono::milliseconds longest) {
    constexpr std::chrono::milliseconds between_looks{50};
    const auto end = std::chrono::steady_clock::now() + longest;
    while (true) {
        std::erase_if(processes, [](const Process& process) { return !runs(process); });
        if (processes.empty() || std::chrono::steady_clock::now() >= end) return processes;
        std::this_thread::sleep_for(between_looks);
    }
}

} // namespace qvtc::qvtcctl
