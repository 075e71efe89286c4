#pragma once

#include <string_view>

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/verb/system_log.hpp"

#include <string>

namespace qvtc::qvtcctl {

/// Refuses (ExitCode::not_possible) to work without root's rights or without /home/root.
void require_terminal();

/// The refusal (ExitCode::not_done) of a change that did not show when it was read back: what
/// was not done, what to check, and what the library's log has said since the mark.
Refusal not_taken(const std::string& what, const LogMark& log);

/// Its presence sends the sound to HDMI.
inline constexpr std::string_view hdmi_marker = "/home/root/enable_hdmi_audio";

} // namespace qvtc::qvtcctl
