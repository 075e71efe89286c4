#pragma once

#include "qvtcctl/clients/client_log.hpp"

#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// Where the settings document and the logs of library and clients lie.
inline constexpr const char* storage_folder = "/home/root";

/// Why no file can be stored in a folder, in the system's words ("No space left on device");
/// nothing when one can. Leaves nothing behind.
std::optional<std::string> storage_fault(const std::string& folder);

/// The same of the folder in which the clients of a type have their log; nothing for a type whose
/// clients have none.
std::optional<std::string> log_fault(const ConnectionType& type);

/// What a launch tells of such a fault.
std::string storage_note(const std::string& fault);

/// Why a client that has no words of its own has failed, while there is such a fault.
Explanation explain_storage(const std::string& fault);

} // namespace qvtc::qvtcctl
