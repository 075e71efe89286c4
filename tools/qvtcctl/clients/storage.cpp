#include "qvtcctl/clients/storage.hpp"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr off_t room = 64L * 1024; ///< for a settings document and a few lines of a log

/// What the file system says of itself, where it has no files without a name.
int fault_by_figures(const std::string& folder) {
    struct statvfs figures {};
    if (statvfs(folder.c_str(), &figures) != 0) return errno;
    if ((figures.f_flag & ST_RDONLY) != 0) return EROFS;
    const bool full = figures.f_bavail * figures.f_frsize < static_cast<unsigned long>(room);
    return full || (figures.f_files != 0 && figures.f_favail == 0) ? ENOSPC : 0;
}

int fault_of(const std::string& folder) {
    const int file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) return fault_by_figures(folder);
    if (file < 0) return errno;
    const int fault = posix_fallocate(file, 0, room);
    close(file);
    return fault;
}

} // namespace

std::optional<std::string> storage_fault(const std::string& folder) {
    const int fault = fault_of(folder);
    if (fault == 0) return std::nullopt;
    return std::strerror(fault);
}

std::optional<std::string> log_fault(const ConnectionType& type) {
    return type.log.empty() ? std::nullopt : storage_fault(storage_folder);
}

std::string storage_note(const std::string& fault) {
    return fmt::format("Nothing can be written in {}: {}. The client's log cannot be kept, so a "
                       "failure may have no reason. Free some space, or have the disk mounted "
                       "writable.",
                       storage_folder, fault);
}

Explanation explain_storage(const std::string& fault) {
    Explanation told;
    told.means = fmt::format("Nothing can be written in {}: {}. The client cannot keep its log "
                             "there, without which it may not even start.",
                             storage_folder, fault);
    told.advice = "Free some space, or have the disk mounted writable; then launch it again.";
    told.known = true;
    return told;
}

} // namespace qvtc::qvtcctl
