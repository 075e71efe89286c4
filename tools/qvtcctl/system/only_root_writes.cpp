#include "qvtcctl/system/only_root_writes.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>

namespace qvtc::qvtcctl {
namespace {

constexpr mode_t written_by_others = S_IWGRP | S_IWOTH;

std::string fault_of_owner(const std::string& path, const struct stat& file) {
    return file.st_uid == 0 ? "" : fmt::format("{} belongs to user {}", path, file.st_uid);
}

/// What lies in a directory above can be exchanged by its owner, and by whoever may write there
/// unless the sticky bit keeps others' entries safe, as in /tmp.
std::string fault_above(const std::string& path) {
    struct stat file {};
    if (stat(path.c_str(), &file) != 0)
        return fmt::format("{} cannot be examined: {}", path, std::strerror(errno));
    if (std::string fault = fault_of_owner(path, file); !fault.empty()) return fault;
    if ((file.st_mode & written_by_others) == 0 || (file.st_mode & S_ISVTX) != 0) return "";
    return fmt::format("other users can write to {}", path);
}

std::string fault_of(const std::string& path, mode_t kind, std::string_view kind_name) {
    struct stat file {};
    if (lstat(path.c_str(), &file) != 0)
        return fmt::format("{} cannot be examined: {}", path, std::strerror(errno));
    if (S_ISLNK(file.st_mode)) return fmt::format("{} is a symbolic link", path);
    if ((file.st_mode & S_IFMT) != kind) return fmt::format("{} is not a {}", path, kind_name);
    if (std::string fault = fault_of_owner(path, file); !fault.empty()) return fault;
    if ((file.st_mode & written_by_others) == 0) return "";
    return fmt::format("other users can write to {}", path);
}

} // namespace

std::string other_writer_of(const std::string& directory) {
    std::filesystem::path above(directory);
    while (above.has_relative_path()) {
        above = above.parent_path();
        if (std::string fault = fault_above(above); !fault.empty()) return fault;
    }
    return fault_of(directory, S_IFDIR, "directory");
}

std::string other_writer_of(const std::string& directory, const std::string& file) {
    if (std::string fault = other_writer_of(directory); !fault.empty()) return fault;
    return fault_of(directory + "/" + file, S_IFREG, "regular file");
}

} // namespace qvtc::qvtcctl
