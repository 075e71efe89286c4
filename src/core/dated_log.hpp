#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>

/// The front-end's own logger: one line a call into a file named after the
/// day, in a directory that a small configuration file names. It shares
/// nothing with the library's system log.

extern "C" {

/// The settings of the logger.
struct log_setting {
    char logpath[512];     ///< full path of the current log file; empty at load
    std::uint32_t maxsize; ///< set, never read
    std::uint8_t loglevel; ///< code of the configured level; never compared with anything
};

/// The record of the write that is going on.
struct log_record {
    char timestr[20];   ///< "YYYY-MM-DD hh:mm:ss"
    char logpath[512];  ///< copy of the settings' path
    std::FILE* logfile; ///< null between writes
};
}

namespace qvtc::dated_log {

inline constexpr int level_count = 4;
inline constexpr std::uint8_t unknown_level = 255;

log_setting& setting();
log_record& record();

/// Fills `today`, of at least 11 bytes, with "YYYY-MM-DD" in local time.
void write_date(char* today);
void write_time();
/// Exact names "NONE" 0, "INFO" 1, "DEBUG" 2, "WARN" 3, "ERROR" 4; else 255.
std::uint8_t code_of_level(const char* name);
/// Takes path and level from a configuration file; false when it cannot be opened.
bool read_config(const char* path);
/// Refreshes the settings from "log.conf" in the working directory, if any.
log_setting& refresh_setting();
/// Opens the log of the day and writes the line's prefix; false when it cannot.
bool begin_line(int level);
/// Writes the message in the reduced format, and its newline.
void write_message(const char* format, std::va_list arguments);
void end_line();

} // namespace qvtc::dated_log
