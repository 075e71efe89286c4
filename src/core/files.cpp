#include "core/files.hpp"

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "core/descriptor.hpp"

namespace qvtc {

namespace {

constexpr int link_limit = 40; // as the kernel's own

bool write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(descriptor, content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Gives the new file the mode and the owner of the one whose place it takes.
bool take_after(int descriptor, const std::string& path, unsigned mode_of_new) {
    struct stat old {};
    if (stat(path.c_str(), &old) != 0) return fchmod(descriptor, mode_of_new) == 0;
    // An owner that cannot be kept, as by an ordinary user, is no reason to fail.
    [[maybe_unused]] const int kept = fchown(descriptor, old.st_uid, old.st_gid);
    return fchmod(descriptor, old.st_mode & 07777) == 0;
}

void flush_directory(const std::string& path) {
    const Descriptor directory(
        open(directory_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.is_open()) fsync(directory.get());
}

int rewrite_in_place(const std::string& path, std::string_view content) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.is_open()) return errno;
    if (!write_all(file.get(), content)) return errno;
    if (ftruncate(file.get(), static_cast<off_t>(content.size())) != 0) return errno;
    return fsync(file.get()) == 0 ? 0 : errno;
}

} // namespace

FileState read_file(const std::string& path, std::string& content) {
    content.clear();
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.is_open())
        return errno == ENOENT || errno == ENOTDIR ? FileState::missing : FileState::unreadable;
    char block[65536];
    for (;;) {
        const ssize_t count = read(file.get(), block, sizeof block);
        if (count == 0) return FileState::read;
        if (count < 0 && errno != EINTR) return FileState::unreadable;
        if (count > 0) content.append(block, static_cast<std::size_t>(count));
    }
}

std::string resolve_links(std::string path) {
    for (int followed = 0; followed < link_limit; ++followed) {
        char target[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0) break;
        const std::string_view text(target, static_cast<std::size_t>(length));
        path = text.starts_with('/') ? "" : directory_of(path) + "/";
        path += text;
    }
    return path;
}

std::string directory_of(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

int replace_file(const std::string& path, std::string_view content, unsigned mode) {
    const std::string target = resolve_links(path);
    std::string fresh = target + ".XXXXXX";
    Descriptor file(mkostemp(fresh.data(), O_CLOEXEC));
    if (!file.is_open()) return errno;
    int error = 0;
    if (!take_after(file.get(), target, mode) || !write_all(file.get(), content) ||
        fsync(file.get()) != 0 || !file.close() || rename(fresh.c_str(), target.c_str()) != 0) {
        error = errno;
        unlink(fresh.c_str());
    }
    if (error == EBUSY) return rewrite_in_place(target, content);
    if (error == 0) flush_directory(target);
    return error;
}

DirectoryLock::DirectoryLock(const std::string& directory, int seconds)
    : directory_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      acquired_(directory_ < 0 && (errno == ENOENT || errno == ENOTDIR)) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::seconds(seconds);
    while (!acquired_ && directory_ >= 0) {
        acquired_ = flock(directory_, LOCK_EX | LOCK_NB) == 0;
        if (acquired_ || Clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

DirectoryLock::~DirectoryLock() {
    if (directory_ >= 0) close(directory_);
}

} // namespace qvtc
