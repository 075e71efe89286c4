#include "support/files.hpp"

#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace qvtc::test {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, const char* action) {
    throw std::runtime_error(path.string() + " cannot be " + action + ": " + std::strerror(errno));
}

} // namespace

void write_file(const std::filesystem::path& path, std::string_view text) {
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text << std::flush;
    if (!file) fail(path, "written");
}

std::string read_file(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || std::filesystem::is_directory(path)) fail(path, "read");
    text << file.rdbuf();
    return text.str();
}

bool file_exists(const std::filesystem::path& path) {
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::vector<std::string> log_lines() {
    constexpr auto log = "/home/root/system.log";
    if (!file_exists(log)) return {};
    static const std::regex stamp(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d )");
    std::vector<std::string> lines = lines_of(read_file(log));
    for (std::string& line : lines) {
        line = std::regex_replace(line, stamp, "", std::regex_constants::format_first_only);
    }
    return lines;
}

} // namespace qvtc::test
