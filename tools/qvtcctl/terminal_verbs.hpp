#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_host_name(CLI::App& app);
Run define_manager_password(CLI::App& app);
Run define_reboot(CLI::App& app);
Run define_shutdown(CLI::App& app);
Run define_network_repair(CLI::App& app);
Run define_update_download(CLI::App& app);
Run define_update_run(CLI::App& app);
Run define_update_status(CLI::App& app);

} // namespace qvtc::qvtcctl
