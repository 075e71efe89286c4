#pragma once

#include <string>

namespace qvtc::api {

/// Puts a resolution into force, as display::set_resolution(), and restarts the
/// terminal, whatever came of it. Refuses on a virtual machine: -1, and nothing
/// is done.
int change_resolution(const std::string& request);

} // namespace qvtc::api
