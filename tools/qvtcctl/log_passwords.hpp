#pragma once

#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// A message of the library's log with "***" in place of the passwords that it holds: those of the
/// command lines of the RDP, Horizon and VNC clients, and of connection records and parameter
/// strings that could not be used.
std::string without_passwords(std::string_view message);

} // namespace qvtc::qvtcctl
