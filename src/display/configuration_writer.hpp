#pragma once

#include <string>

/// Puts a chosen resolution into force.
namespace qvtc::display {

/// Tells the terminal's display script the resolution of this index, replaces
/// the X server's configuration by the minimal one and runs the script, which
/// has applied the resolution when this returns. The script's wait status. What
/// every change of resolution or mode, and the factory reset, ends in.
int write_configuration(const std::string& index);

/// Replaces the X server's configuration by a complete one for this index and
/// this machine, for the server's next start; the former one is kept as
/// /tmp/backup_xorg.conf. The screen itself is left as it is.
void write_static_configuration(const std::string& index);

/// Runs the terminal's display script and waits; its wait status.
int run_display_script();

} // namespace qvtc::display
