#pragma once

#include <span>
#include <string>

namespace qvtc {

/// Replaces one of the operating system's text files by these lines, each with
/// its newline, all at once: a reader meets the old file or the new one. A file
/// that was missing is readable for all. False, with the former file still
/// there and the reason in the log, when that could not be done.
bool write_lines(const std::string& path, std::span<const std::string> lines);

} // namespace qvtc
