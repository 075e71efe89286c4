#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_power_idle(CLI::App& app);

} // namespace qvtc::qvtcctl
