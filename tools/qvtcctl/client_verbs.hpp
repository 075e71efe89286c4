#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_launch(CLI::App& app);
Run define_status(CLI::App& app);
Run define_cancel(CLI::App& app);
Run define_doctor(CLI::App& app);
Run define_delay(CLI::App& app);

} // namespace qvtc::qvtcctl
