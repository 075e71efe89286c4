#pragma once

#include <string>

namespace qvtc::qvtcctl {

/// Lets a person decide about something that cannot be taken back. With `yes` (the option --yes)
/// nothing is asked. Otherwise the controlling terminal is: "consequence Go on? [y/N] ". Refuses
/// (ExitCode::bad_usage) without a terminal to ask on, and (ExitCode::not_done) when the answer
/// is not "y" or "yes".
void require_consent(bool yes, const std::string& consequence);

} // namespace qvtc::qvtcctl
