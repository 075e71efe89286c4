#include "qvtcctl/verb/system_log.hpp"

#include "qvtcctl/base/input_file.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/log_passwords.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::uintmax_t most_bytes = 128UL * 1024;

bool speaks_of_failure(std::string_view line) {
    constexpr std::string_view words[] = {"[ERROR]", "error", "fail", "not found", "not free"};
    return std::any_of(std::begin(words), std::end(words), [line](std::string_view word) {
        return line.find(word) != std::string_view::npos;
    });
}

std::filesystem::file_time_type last_written(const std::string& path) {
    std::error_code missing;
    return std::filesystem::last_write_time(path, missing);
}

} // namespace

LogMark::LogMark(std::string path)
    : path_(std::move(path)), size_(InputFile(path_).size()), written_(last_written(path_)) {}

bool LogMark::is_touched() const {
    return InputFile(path_).size() != size_ || last_written(path_) != written_;
}

std::string LogMark::added() const {
    const InputFile file(path_);
    const std::uintmax_t now = file.size();
    const std::uintmax_t start = now < size_ ? 0 : size_;
    return file.read_from(std::max(start, now - std::min(now, most_bytes)), most_bytes);
}

std::string last_complaint(std::string_view text) {
    const std::vector<std::string_view> lines = split_lines(text);
    const auto found = std::find_if(lines.rbegin(), lines.rend(), speaks_of_failure);
    return found == lines.rend() ? "" : printable(without_passwords(*found));
}

std::string file_tail(const std::string& path, std::uintmax_t limit) {
    const InputFile file(path);
    if (!file.is_open() && !file.is_missing()) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("{} cannot be read: {}.", printable(path), file.fault()));
    }
    const std::uintmax_t size = file.size();
    return file.read_from(size - std::min(size, limit), limit);
}

} // namespace qvtc::qvtcctl
