#include "core/draft.hpp"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file_attributes.hpp"
#include "core/file_lock.hpp"

namespace qvtc {

namespace {

constexpr std::string_view draft_suffix = ".qvtc-draft";
constexpr std::string_view kept_suffix = ".qvtc-kept";
constexpr std::size_t longest_stem = 240; // a file's name has 255 bytes at most

/// The directory as it stands before a name: with its slash, or empty.
std::string hidden_name(const std::string& directory, const std::string& name) {
    return directory + "." + name.substr(0, longest_stem) + std::string(draft_suffix);
}

/// Whether it is as open_locked makes it, and not what a killed writer has left.
bool is_fresh(int file) {
    struct stat status {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0 &&
           (status.st_mode & 0077) == 0 && status.st_uid == geteuid() && status.st_nlink == 1;
}

int open_fresh(const std::string& path) {
    for (;;) {
        Descriptor file(open_locked(path));
        if (!file.is_open() || is_fresh(file.get())) return file.release();
        if (unlink(path.c_str()) != 0) return -1;
    }
}

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

bool is_leftover(const std::string& name) {
    return name.starts_with('.') && (name.ends_with(draft_suffix) || name.ends_with(kept_suffix));
}

} // namespace

std::string draft_name(const std::string& target) {
    const std::size_t name = target.rfind('/') + 1;
    return hidden_name(target.substr(0, name), target.substr(name));
}

std::string remote_draft_name(const std::string& target) {
    std::string name = std::filesystem::absolute(target).relative_path();
    std::replace(name.begin(), name.end(), '/', '!');
    return hidden_name("/run/", name);
}

std::string kept_copy_name(const std::string& draft) {
    return draft.substr(0, draft.size() - draft_suffix.size()) + std::string(kept_suffix);
}

std::array<std::string, 2> kept_copies(const std::string& target) {
    return {kept_copy_name(draft_name(target)), kept_copy_name(remote_draft_name(target))};
}

void remove_leftovers(const std::string& directory) {
    // Not by std::filesystem: its iterator ends the process when memory runs out.
    const std::unique_ptr<DIR, CloseDirectory> listing(opendir(directory.c_str()));
    if (listing == nullptr) return;
    while (const dirent* const entry = readdir(listing.get())) {
        if (!is_leftover(entry->d_name)) continue;
        const std::string path = directory + "/" + entry->d_name;
        const LockWait at_once(LockWait::Duration::zero());
        // Locked by its writer: it is not left, but at work.
        const Descriptor file(open_locked(path));
        if (file.is_open()) unlink(path.c_str());
    }
}

bool write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(descriptor, content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

Draft::Draft(std::string path)
    : path_(std::move(path)), file_(open_fresh(path_)), error_(file_.is_open() ? 0 : errno) {}

Draft::~Draft() {
    if (file_.is_open() && !path_.empty()) unlink(path_.c_str());
}

int Draft::fill(std::string_view content, const std::string& former, unsigned mode_of_new) {
    const bool filled = write_all(file_.get(), content) &&
                        take_after(file_.get(), former, mode_of_new) && fsync(file_.get()) == 0;
    return filled ? 0 : errno;
}

int Draft::move_to(const std::string& path) {
    if (rename(path_.c_str(), path.c_str()) != 0) return errno;
    path_.clear();
    return 0;
}

} // namespace qvtc
