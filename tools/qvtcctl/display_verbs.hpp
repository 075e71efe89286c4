#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_display_show(CLI::App& app);
Run define_display_list(CLI::App& app);
Run define_display_screens(CLI::App& app);
Run define_display_set(CLI::App& app);
Run define_display_keep(CLI::App& app);
Run define_display_revert(CLI::App& app);
Run define_display_mode(CLI::App& app);
Run define_display_order(CLI::App& app);
Run define_display_brightness(CLI::App& app);
Run define_display_refresh(CLI::App& app);

} // namespace qvtc::qvtcctl
