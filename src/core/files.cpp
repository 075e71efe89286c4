#include "core/files.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/descriptor.hpp"
#include "core/draft.hpp"

namespace qvtc {

namespace {

constexpr int link_limit = 40; // as the kernel's own
constexpr std::size_t size_limit = INT_MAX;

void flush_directory(const std::string& path) {
    const Descriptor directory(
        open(directory_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.is_open()) fsync(directory.get());
}

/// A device, a pipe or a directory: something that no file can take the place of.
bool is_special(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

int open_for_writing(const std::string& path) {
    // A pipe that nobody reads would be waited for.
    return open(path.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
}

int write_to_special(const std::string& path, std::string_view content) {
    const Descriptor file(open_for_writing(path));
    return file.is_open() && write_all(file.get(), content) ? 0 : errno;
}

/// A file that keeps its place and gets another content.
class Rewrite {
  public:
    /// Makes sure of the room that it takes.
    Rewrite(const std::string& path, std::size_t size) : file_(open_for_writing(path)) {
        struct stat former {};
        error_ = file_.is_open() && fstat(file_.get(), &former) == 0 ? 0 : errno;
        if (error_ != 0 || size == 0) return;
        do {
            error_ = posix_fallocate(file_.get(), 0, static_cast<off_t>(size));
        } while (error_ == EINTR);
        if (error_ != 0 && ftruncate(file_.get(), former.st_size) != 0) error_ = errno;
    }

    // Each gives 0 or an errno.
    int error() const { return error_; }
    int write(std::string_view content) {
        const bool written = write_all(file_.get(), content) &&
                             ftruncate(file_.get(), static_cast<off_t>(content.size())) == 0 &&
                             fsync(file_.get()) == 0;
        return written ? 0 : errno;
    }

  private:
    Descriptor file_;
    int error_ = 0;
};

void remove_kept_copies(const std::string& target) {
    for (const std::string& copy : kept_copies(target)) unlink(copy.c_str());
}

/// Rewrites a file that cannot be replaced. The draft, with the same content, is
/// kept until all of it has arrived.
int rewrite_in_place(const std::string& target, std::string_view content, Draft& draft,
                     const std::string& copy) {
    if (const int error = draft.move_to(copy); error != 0) return error;
    flush_directory(copy);
    Rewrite rewrite(target, content.size());
    if (rewrite.error() != 0) {
        unlink(copy.c_str());
        return rewrite.error();
    }
    const int error = rewrite.write(content);
    if (error == 0) remove_kept_copies(target);
    return error;
}

int rewrite_in_read_only_directory(const std::string& target, std::string_view content,
                                   unsigned mode) {
    if (access(target.c_str(), F_OK) != 0) return EROFS;
    const std::string name = remote_draft_name(target);
    Draft draft(name);
    if (draft.error() != 0) return draft.error();
    if (const int error = draft.fill(content, target, mode); error != 0) return error;
    return rewrite_in_place(target, content, draft, kept_copy_name(name));
}

} // namespace

FileState read_file(const std::string& path, std::string& content) {
    content.clear();
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.is_open())
        return errno == ENOENT || errno == ENOTDIR ? FileState::missing : FileState::unreadable;
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || status.st_size > static_cast<off_t>(size_limit))
        return FileState::unreadable;
    char block[65536];
    for (;;) {
        const ssize_t count = read(file.get(), block, sizeof block);
        if (count == 0) return FileState::read;
        if (count < 0 && errno != EINTR) return FileState::unreadable;
        if (count > 0) content.append(block, static_cast<std::size_t>(count));
        if (content.size() > size_limit) return FileState::unreadable;
    }
}

FileState read_replaceable_file(const std::string& path, std::string& content) {
    const auto copies = kept_copies(resolve_links(path));
    const auto read_copy = [&copies](std::string& into) {
        for (const std::string& copy : copies) {
            const FileState state = read_file(copy, into);
            if (state != FileState::missing) return state;
        }
        return FileState::missing;
    };
    FileState state = read_copy(content);
    if (state != FileState::missing) return state;
    state = read_file(path, content);
    // A writer may have begun to rewrite it while it was read.
    std::string newer;
    const FileState newer_state = read_copy(newer);
    if (newer_state == FileState::missing) return state;
    content = std::move(newer);
    return newer_state;
}

void finish_rewriting(const std::string& path) {
    const std::string target = resolve_links(path);
    std::string content;
    for (const std::string& copy : kept_copies(target)) {
        if (read_file(copy, content) != FileState::read) continue;
        Rewrite rewrite(target, content.size());
        if (rewrite.error() == 0 && rewrite.write(content) == 0) unlink(copy.c_str());
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
    if (is_special(target)) return write_to_special(target, content);
    const std::string name = draft_name(target);
    Draft draft(name);
    if (draft.error() == EROFS) return rewrite_in_read_only_directory(target, content, mode);
    if (draft.error() != 0) return draft.error();
    if (const int error = draft.fill(content, target, mode); error != 0) return error;
    const int error = draft.move_to(target);
    if (error == EBUSY) return rewrite_in_place(target, content, draft, kept_copy_name(name));
    if (error != 0) return error;
    flush_directory(target);
    remove_kept_copies(target);
    return 0;
}

} // namespace qvtc
