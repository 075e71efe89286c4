#include "qvtcctl/base/input_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

/// Empty for a regular file.
std::string kind_in_the_way(mode_t mode) {
    if (S_ISREG(mode)) return "";
    if (S_ISDIR(mode)) return "it is a directory, not a regular file";
    if (S_ISFIFO(mode)) return "it is a FIFO, not a regular file";
    if (S_ISSOCK(mode)) return "it is a socket, not a regular file";
    return "it is a device, not a regular file";
}

} // namespace

InputFile::InputFile(const std::string& path) {
    struct stat status {};
    // Looked at first: opening a device can have effects of its own.
    if (stat(path.c_str(), &status) != 0) {
        missing_ = errno == ENOENT || errno == ENOTDIR;
        fault_ = std::strerror(errno);
        return;
    }
    fault_ = kind_in_the_way(status.st_mode);
    if (!fault_.empty()) return;
    descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) {
        fault_ = std::strerror(errno);
        return;
    }
    if (fstat(descriptor_, &status) == 0) fault_ = kind_in_the_way(status.st_mode);
    if (!fault_.empty()) close(std::exchange(descriptor_, -1));
}

InputFile::~InputFile() {
    if (descriptor_ >= 0) close(descriptor_);
}

InputFile::InputFile(InputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), missing_(other.missing_),
      fault_(std::move(other.fault_)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(missing_, other.missing_);
    std::swap(fault_, other.fault_);
    return *this;
}

std::uintmax_t InputFile::size() const {
    struct stat status {};
    if (!is_open() || fstat(descriptor_, &status) != 0) return 0;
    return static_cast<std::uintmax_t>(status.st_size);
}

std::string InputFile::read_from(std::uintmax_t start, std::uintmax_t limit) const {
    if (!is_open() || lseek(descriptor_, static_cast<off_t>(start), SEEK_SET) < 0) return "";
    std::string text = read_up_to(descriptor_, limit);
    text.resize(std::min<std::uintmax_t>(text.size(), limit));
    return text;
}

std::string read_up_to(int descriptor, std::size_t limit) {
    std::string text;
    std::array<char, 65536> block{};
    while (text.size() <= limit) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return text;
        if (count == 0) break;
        text.append(block.data(), static_cast<std::size_t>(count));
    }
    errno = 0;
    return text;
}

} // namespace qvtc::qvtcctl
