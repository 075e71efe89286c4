#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::api {

/// The command that serves the screen to a viewer, as the stored setting asks
/// for it; nothing when it asks for none. A setting that is too short to be whole
/// asks for none.
std::optional<std::string> remote_view_command(std::string_view setting);

/// The start of the front-end: sound on HDMI, log rotation, power saving,
/// brightness, the server of the remote view, the front-end's pictures. No step's
/// failure stops the later ones; to call it again repeats them all.
void start();

} // namespace qvtc::api
