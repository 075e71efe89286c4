#pragma once

#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// Where the settings document and the logs of library and clients lie.
inline constexpr const char* storage_folder = "/home/root";

/// Why no file can be stored in a folder, in the system's words ("No space left on device");
/// nothing when one can. Leaves nothing behind.
std::optional<std::string> storage_fault(const std::string& folder);

/// What a launch tells of such a fault.
std::string storage_note(const std::string& fault);

} // namespace qvtc::qvtcctl
