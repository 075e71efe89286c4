#pragma once

#include <string_view>

namespace qvtc::qvtcctl {

/// Whether a program of this name can be found in PATH.
bool is_installed(std::string_view program);

} // namespace qvtc::qvtcctl
