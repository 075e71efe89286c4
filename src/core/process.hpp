#pragma once

#include <string>

namespace qvtc {

/// Whether a line of the process list, arguments included, matches `name`, a
/// basic regular expression. Also a line of an editor that has such a file open.
bool process_runs(const std::string& name);

} // namespace qvtc
