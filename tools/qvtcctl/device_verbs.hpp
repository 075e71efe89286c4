#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_init(CLI::App& app);
Run define_language(CLI::App& app);
Run define_battery(CLI::App& app);
Run define_oem(CLI::App& app);
Run define_log(CLI::App& app);

} // namespace qvtc::qvtcctl
