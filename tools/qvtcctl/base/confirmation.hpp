#pragma once

#include <string>

namespace qvtc::qvtcctl {

/// Asks a person to confirm something that cannot be undone. With `yes` (the option --yes) nothing
/// is asked. Otherwise the controlling tty shows "consequence Go on? [y/N] ". Refuses
/// (ExitCode::bad_usage) without a tty to ask on, and (ExitCode::not_done) when the answer is not
/// "y" or "yes".
void require_consent(bool yes, const std::string& consequence);

} // namespace qvtc::qvtcctl
