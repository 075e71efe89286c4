#include "qvtcctl/system_log.hpp"

#include "qvtcctl/text.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace qvtc::qvtcctl {
namespace {

constexpr std::uintmax_t most_bytes = 128UL * 1024;

std::uintmax_t size_of(const std::string& path) {
    std::error_code ignored;
    const std::uintmax_t size = std::filesystem::file_size(path, ignored);
    return ignored ? 0 : size;
}

std::string read_from(const std::string& path, std::uintmax_t start) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(start));
    return {std::istreambuf_iterator<char>(file), {}};
}

bool speaks_of_failure(std::string_view line) {
    constexpr std::string_view words[] = {"[ERROR]", "error", "fail", "not found", "not free"};
    return std::any_of(std::begin(words), std::end(words), [line](std::string_view word) {
        return line.find(word) != std::string_view::npos;
    });
}

} // namespace

LogMark::LogMark(std::string path) : path_(std::move(path)), size_(size_of(path_)) {}

std::string LogMark::added() const {
    const std::uintmax_t now = size_of(path_);
    const std::uintmax_t start = now < size_ ? 0 : size_;
    return read_from(path_, std::max(start, now - std::min(now, most_bytes)));
}

std::string last_complaint(std::string_view text) {
    const std::vector<std::string_view> lines = split_lines(text);
    const auto found = std::find_if(lines.rbegin(), lines.rend(), speaks_of_failure);
    return found == lines.rend() ? "" : printable(*found);
}

std::string file_tail(const std::string& path, std::uintmax_t limit) {
    const std::uintmax_t size = size_of(path);
    return read_from(path, size - std::min(size, limit));
}

} // namespace qvtc::qvtcctl
