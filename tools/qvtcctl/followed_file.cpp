#include "qvtcctl/followed_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvtcctl {

FollowedFile::FollowedFile(std::string path, std::uintmax_t tail) : path_(std::move(path)) {
    open_current();
    if (descriptor_ < 0) return;
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    lseek(descriptor_, std::max<off_t>(size - static_cast<off_t>(tail), 0), SEEK_SET);
}

FollowedFile::~FollowedFile() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool FollowedFile::is_current() const {
    struct stat named {};
    struct stat held {};
    if (stat(path_.c_str(), &named) != 0) return true; // gone: another one is still to come
    return descriptor_ >= 0 && fstat(descriptor_, &held) == 0 && named.st_ino == held.st_ino &&
           named.st_dev == held.st_dev;
}

void FollowedFile::open_current() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
}

void FollowedFile::read_rest() {
    std::array<char, 65536> block{};
    while (descriptor_ >= 0) {
        const ssize_t count = read(descriptor_, block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        pending_.append(block.data(), static_cast<std::size_t>(count));
    }
}

std::string FollowedFile::lines() {
    // Asked first: what a writer adds to the old file afterwards is its last.
    const bool moved_aside = !is_current();
    read_rest();
    if (moved_aside) {
        open_current();
        read_rest();
    }
    const std::size_t end = pending_.rfind('\n') + 1;
    std::string rest = pending_.substr(end);
    pending_.resize(end);
    return std::exchange(pending_, std::move(rest));
}

} // namespace qvtc::qvtcctl
