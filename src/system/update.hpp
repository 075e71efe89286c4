#pragma once

#include <string>

/// The software update: a package that is fetched into /tmp/nfs, and a script
/// beside it that the package brings along.
namespace qvtc::system {

/// Fetches the package, which the URL must name as a file called update.qvtc.
/// False, with the reason in the log, when it is not there afterwards.
bool download_update(const std::string& url);

/// Runs the script and waits for it.
void run_update_script();

/// Whether the script is running.
bool update_is_running();

/// Runs the script, and waits until nothing of it runs any more.
void update();

} // namespace qvtc::system
