#pragma once

#include <optional>

namespace qvtc::test {

/// How the disposable terminal around this process was made. Under `user` there are no loop
/// devices and device nodes, and daemons that change their group fail.
enum class TerminalMode { root, user };

/// Nothing when this process runs outside a disposable terminal.
std::optional<TerminalMode> terminal_mode();

} // namespace qvtc::test
