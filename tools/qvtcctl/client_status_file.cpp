#include "qvtcctl/client_status_file.hpp"

#include "qvtcctl/system_log.hpp"

#include <sys/stat.h>

namespace qvtc::qvtcctl {

ClientStatusFile::ClientStatusFile() : before_(stamp()) {}

WatcherVerdict ClientStatusFile::new_verdict() const {
    return stamp() == before_ ? WatcherVerdict::none : verdict();
}

WatcherVerdict ClientStatusFile::verdict() {
    constexpr std::uintmax_t longest_line = 256;
    return verdict_in(file_tail(client_status_path, longest_line));
}

ClientStatusFile::Stamp ClientStatusFile::stamp() {
    struct stat file {};
    if (stat(client_status_path, &file) != 0) return {};
    return {file.st_mtim.tv_sec, file.st_mtim.tv_nsec, file.st_ino};
}

} // namespace qvtc::qvtcctl
