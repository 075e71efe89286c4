#include "qvtcctl/base/confirmation.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/secrets.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {

void require_consent(bool yes, const std::string& consequence) {
    if (yes) return;
    const std::optional<std::string> answer =
        ask_openly(fmt::format("{} Go on? [y/N] ", consequence));
    if (!answer) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("{} Cannot ask for confirmation without a tty: give --yes. "
                                  "Nothing was done.",
                                  consequence));
    }
    if (*answer == "y" || *answer == "Y" || *answer == "yes") return;
    throw Refusal(ExitCode::not_done, "Cancelled; nothing was changed.");
}

} // namespace qvtc::qvtcctl
