#include "qvtcctl/display_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 10> table{{
    {"show", "Show how the screens are set and what they show",
     "Shows the resolution, mode, order and brightness that are set, and what each connected "
     "screen shows.",
     "qvtcctl display show\n"
     "qvtcctl display show --json",
     define_display_show},
    {"list", "List the resolutions",
     "Lists the resolutions that a user is offered, and marks the one that is set.",
     "qvtcctl display list",
     define_display_list},
    {"set", "Set the resolution, and restart",
     "Sets the resolution of all screens and restarts the terminal at once. The change is "
     "then pending: \"keep\" keeps it, \"revert\" goes back to the former resolution.",
     "qvtcctl display set 1920x1080\n"
     "qvtcctl display set auto --keep --yes",
     define_display_set},
    {"keep", "Keep a changed resolution",
     "Keeps the resolution that \"set\" has changed.",
     "qvtcctl display keep",
     define_display_keep},
    {"revert", "Go back to the former resolution",
     "Goes back to the resolution that was kept last, on the screens too. There is no restart.",
     "qvtcctl display revert",
     define_display_revert},
    {"mode", "Show or set what several screens show",
     "Shows what several screens show, or sets it: clone (all the same), extend (one desktop, side "
     "by side) or vertical (one desktop, one above the other). The terminal "
     "arranges two screens; more than two are left as they are.",
     "qvtcctl display mode\n"
     "qvtcctl display mode extend",
     define_display_mode},
    {"order", "Show or set the order of two screens",
     "Shows the order of two screens, or sets it: usual or reverse.",
     "qvtcctl display order\n"
     "qvtcctl display order reverse",
     define_display_order},
    {"brightness", "Show or set the brightness",
     "Shows the brightness of the first screen in percent, or sets that of all screens.",
     "qvtcctl display brightness\n"
     "qvtcctl display brightness 80",
     define_display_brightness},
    {"screens", "Show how many screens are connected",
     "Shows how many screens are connected, which they are, and whether the terminal has the two "
     "outputs, VGA and HDMI, that an extended desktop needs.",
     "qvtcctl display screens",
     define_display_screens},
    {"refresh", "Show or set the refresh setting",
     "Shows the display refresh setting, or sets it. It is a JSON object that only the "
     "terminal's front-end understands.",
     "qvtcctl display refresh\n"
     "qvtcctl display refresh '{\"rate\": 60}'",
     define_display_refresh},
}};
// clang-format on

} // namespace

std::span<const Verb> display_verbs() { return table; }

} // namespace qvtc::qvtcctl
