#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::test {

/// Replaces the file's contents, making missing directories. Throws std::runtime_error.
void write_file(const std::filesystem::path& path, std::string_view text);

/// The whole file. Throws std::runtime_error when it cannot be read: a test that expects a file
/// to be absent asks `file_exists`.
std::string read_file(const std::filesystem::path& path);

bool file_exists(const std::filesystem::path& path);

/// The lines without their newlines; a last line without newline counts.
std::vector<std::string> lines_of(std::string_view text);

/// The lines of /home/root/system.log without date and time: "[ERROR] @execmd popen error ...".
/// Empty when there is no log.
std::vector<std::string> log_lines();

} // namespace qvtc::test
