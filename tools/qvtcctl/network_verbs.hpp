#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_network_show(CLI::App& app);
Run define_network_scan(CLI::App& app);
Run define_network_set(CLI::App& app);
Run define_network_wifi(CLI::App& app);
Run define_network_join(CLI::App& app);
Run define_network_wireless(CLI::App& app);
Run define_network_route(CLI::App& app);

} // namespace qvtc::qvtcctl
