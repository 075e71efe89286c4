#include "qvtcctl/system_log.hpp"

#include "qvtcctl/input_file.hpp"
#include "qvtcctl/log_passwords.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/text.hpp"

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

/// The connections that the log says were launched, in this order.
std::vector<unsigned> launches_in(std::string_view log) {
    constexpr std::string_view words = "[INFO] @launchclient id = ";
    std::vector<unsigned> ids;
    for (const std::string_view line : split_lines(log)) {
        const std::size_t at = line.find(words);
        if (at == std::string_view::npos) continue;
        const std::optional<unsigned> id = parse_number(trimmed(line.substr(at + words.size())));
        if (id) ids.push_back(*id);
    }
    return ids;
}

std::string whole_system_log() {
    constexpr std::uintmax_t most = 2UL * 1024 * 1024; // it is begun anew after one megabyte
    return file_tail(std::string(system_log), most);
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

std::optional<unsigned> last_launched(const ConnectionType& type, std::string_view log) {
    std::optional<unsigned> last;
    for (const unsigned id : launches_in(log)) {
        if (type_of_id(id) == &type) last = id;
    }
    return last;
}

std::optional<unsigned> last_launched(const ConnectionType& type) {
    return last_launched(type, whole_system_log());
}

std::size_t launches_since(const ConnectionType& type, const ConnectionType& other,
                           std::string_view log) {
    std::size_t count = 0;
    for (const unsigned id : launches_in(log)) {
        if (type_of_id(id) == &type) count = 0;
        if (type_of_id(id) == &other) ++count;
    }
    return count;
}

std::size_t launches_since(const ConnectionType& type, const ConnectionType& other) {
    return launches_since(type, other, whole_system_log());
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
