#include "qvtcctl/base/followed_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvtcctl {

FollowedFile::FollowedFile(std::string path, std::uintmax_t tail)
    : path_(std::move(path)), file_(path_) {
    if (!file_.is_open()) return;
    const off_t size = lseek(file_.descriptor(), 0, SEEK_END);
    lseek(file_.descriptor(), std::max<off_t>(size - static_cast<off_t>(tail), 0), SEEK_SET);
}

bool FollowedFile::is_current() const {
    struct stat named {};
    struct stat held {};
    if (stat(path_.c_str(), &named) != 0) return true; // gone: another one is still to come
    return file_.is_open() && fstat(file_.descriptor(), &held) == 0 &&
           named.st_ino == held.st_ino && named.st_dev == held.st_dev;
}

bool FollowedFile::was_cut() const {
    return file_.is_open() &&
           lseek(file_.descriptor(), 0, SEEK_CUR) > static_cast<off_t>(file_.size());
}

void FollowedFile::read_rest() {
    std::array<char, 65536> block{};
    while (file_.is_open()) {
        const ssize_t count = read(file_.descriptor(), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        pending_.append(block.data(), static_cast<std::size_t>(count));
    }
}

std::string FollowedFile::lines() {
    // Asked first: what a writer adds to the old file afterwards is its last.
    const bool moved_aside = !is_current();
    if (was_cut()) {
        pending_.clear();
        lseek(file_.descriptor(), 0, SEEK_SET);
    }
    read_rest();
    if (moved_aside) {
        file_ = InputFile(path_);
        read_rest();
    }
    const std::size_t end = pending_.rfind('\n') + 1;
    std::string rest = pending_.substr(end);
    pending_.resize(end);
    return std::exchange(pending_, std::move(rest));
}

} // namespace qvtc::qvtcctl
