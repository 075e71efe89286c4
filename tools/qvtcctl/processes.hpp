#pragma once

#include "qvtcctl/record.hpp"

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace qvtc::qvtcctl {

struct Process {
    pid_t pid;
    std::vector<std::string> arguments;
};

/// The living processes whose name begins so; zombies are not among them.
std::vector<Process> running_processes(std::string_view name_begins);

/// Whether that client was started for that connection: its arguments hold the address, and for
/// RDP the name as the window's title.
bool serves(const Process& client, const ConnectionType& type, const Record& record);

} // namespace qvtc::qvtcctl
