#include "qvtcctl/device_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr auto table = std::to_array<Verb>({
    {"init", "Run the terminal's start sequence",
     "Does what the front-end does first when the terminal starts, and shows the result of each step: "
     "sound where it goes to HDMI, logs that have outgrown their limits, power saving, brightness, "
     "the remote view's server, the front-end's pictures.",
     "qvtcctl init",
     define_init},
    {"language", "Show or set the language of the front-end",
     "Shows the language, or sets it together with the picture that the terminal shows while it "
     "starts. The front-end is translated to zh_CN, ko_KR and en_US.",
     "qvtcctl language\n"
     "qvtcctl language ko_KR",
     define_language},
    {"battery", "Show the battery's charge",
     "Shows the charge of the battery in percent, if there is one.",
     "qvtcctl battery",
     define_battery, Settings::not_needed},
    {"oem", "Show what the terminal's vendor has stored",
     "Shows the vendor's marker, data, information and list of features.",
     "qvtcctl oem\n"
     "qvtcctl oem --json",
     define_oem, Settings::not_needed},
    {"log", "Show the library's log",
     "Shows the last lines of the log, or follows it until you press Ctrl+C. The passwords of "
     "client command lines are masked unless --show-passwords is given.",
     "qvtcctl log\n"
     "qvtcctl log --level error --lines 100\n"
     "qvtcctl log --follow",
     define_log, Settings::not_needed},
});
// clang-format on

} // namespace

std::span<const Verb> device_verbs() { return table; }

} // namespace qvtc::qvtcctl
