#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// How much a line of the log matters, in ascending order.
enum class LogLevel { debug, info, error };

/// One line of the library's log, with the lines that follow it without a time of their own.
struct LogLine {
    std::string time; ///< "2026-11-21 12:00:00"; empty for a first line that has none
    LogLevel level = LogLevel::info;
    std::string message;
};

/// The level of that name. Refuses any other.
LogLevel require_level(const std::string& name);
std::string_view name_of(LogLevel level);

/// Takes the log's text apart. A message of several lines stays one.
std::vector<LogLine> parse_log(std::string_view text);

/// As a person reads it, made printable, each with its newline.
std::string text_of(const LogLine& line);

} // namespace qvtc::qvtcctl
