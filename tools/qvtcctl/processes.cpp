#include "qvtcctl/processes.hpp"

#include "qvtcctl/text.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace qvtc::qvtcctl {
namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The state stands behind the name, which is in parentheses and may hold any character.
bool is_zombie(const fs::path& process) {
    const std::string stat = contents(process / "stat");
    const std::size_t end = stat.rfind(") ");
    return end == std::string::npos || stat.compare(end + 2, 1, "Z") == 0;
}

std::vector<std::string> arguments_of(const fs::path& process) {
    std::vector<std::string> arguments;
    std::string argument;
    for (const char c : contents(process / "cmdline")) {
        if (c == '\0') {
            arguments.push_back(std::move(argument));
            argument.clear();
        } else {
            argument += c;
        }
    }
    return arguments;
}

} // namespace

std::vector<Process> running_processes(std::string_view name_begins) {
    std::vector<Process> found;
    std::error_code ended;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", ended)) {
        const std::optional<unsigned> pid = parse_number(entry.path().filename().string());
        if (!pid || !contents(entry.path() / "comm").starts_with(name_begins)) continue;
        if (is_zombie(entry.path())) continue;
        found.push_back({static_cast<pid_t>(*pid), arguments_of(entry.path())});
    }
    return found;
}

bool serves(const Process& client, const ConnectionType& type, const Record& record) {
    const auto any_argument = [&](auto test) {
        return std::any_of(client.arguments.begin(), client.arguments.end(), test);
    };
    if (type.number == QVTC_TYPE_RDP) {
        return any_argument([&](const std::string& a) { return a == "/v:" + record.address(); }) &&
               any_argument([&](const std::string& a) { return a == "/t:" + record.name(); });
    }
    return any_argument(
        [&](const std::string& a) { return a.find(record.address()) != std::string::npos; });
}

} // namespace qvtc::qvtcctl
