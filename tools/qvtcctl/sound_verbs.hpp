#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_volume(CLI::App& app);
Run define_sound_show(CLI::App& app);
Run define_sound_configure(CLI::App& app);

} // namespace qvtc::qvtcctl
