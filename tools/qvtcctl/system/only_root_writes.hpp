#pragma once

#include <string>

namespace qvtc::qvtcctl {

/// Why a directory could be changed by others than root, as in "/tmp/nfs belongs to user 1000";
/// empty when only root can. The directory itself must not be a symbolic link.
std::string other_writer_of(const std::string& directory);

/// The same for a regular file in that directory.
std::string other_writer_of(const std::string& directory, const std::string& file);

} // namespace qvtc::qvtcctl
