#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// The end of a log at some moment, and what has been written since.
class LogMark {
  public:
    explicit LogMark(std::string path);

    /// At most the last 128 KiB of what was added since, or of the whole file when it has been
    /// begun anew. Empty when it is no regular file.
    std::string added() const;

    /// Whether the file has been written to since, if only to empty it.
    bool is_touched() const;

  private:
    std::string path_;
    std::uintmax_t size_;
    std::filesystem::file_time_type written_;
};

/// Where the library writes what went wrong.
inline constexpr std::string_view system_log = "/home/root/system.log";

/// The last line of that log's text that speaks of an error or a failure, fit to be shown:
/// printable and without passwords. Empty when none does.
std::string last_complaint(std::string_view text);

/// At most the last "limit" bytes of a file; empty when there is none. Refuses
/// (ExitCode::not_done) what is no regular file or cannot be read.
std::string file_tail(const std::string& path, std::uintmax_t limit);

} // namespace qvtc::qvtcctl
