#include "qvtcctl/display/screens.hpp"

#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/stored_setting.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

// clang-format off
constexpr std::array<ScreenMode, 3> modes{{
    {"clone",    "clone",                "all screens show the same", Arrangement::same_place},
    {"extend",   "extend",               "one desktop over all screens, side by side", Arrangement::beside},
    {"vertical", "extendverticalscreen", "one desktop over all screens, one above the other", Arrangement::below},
}};
// clang-format on

constexpr unsigned brightness_tolerance = 1; // the library's number is cut, not rounded

/// A marker file that could not be made or removed, most likely.
Refusal unchanged(std::string_view what, std::string_view advice) {
    return Refusal(ExitCode::not_done, fmt::format("the {} was not changed: {}", what, advice));
}

/// As the library tells one, before it changes anything.
void require_no_virtual_machine() {
    const auto product = run_program({"dmidecode", "-s", "system-product-name"}, "LC_ALL=C");
    if (!product || product->text.find("Virtual") == std::string::npos) return;
    throw Refusal(ExitCode::not_possible,
                  "this is a virtual machine: its resolution is set from outside. Nothing was "
                  "changed.");
}

} // namespace

Screens::Screens(Chatter chatter) : chatter_(chatter) { require_terminal(); }

std::string Screens::member(json_object* (*getter)(), const char* name) const {
    const Quiet quiet(chatter_);
    const Json answer(getter());
    return answer ? text_member(answer.get(), name) : "";
}

std::vector<std::string> Screens::offered_resolutions() const {
    const Quiet quiet(chatter_);
    const Json answer(qvgetdisplist());
    std::vector<std::string> names;
    json_object* list = nullptr;
    if (!answer || json_object_object_get_ex(answer.get(), "list", &list) == 0) return names;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        names.push_back(text_member(json_object_array_get_idx(list, i), "value"));
    }
    return names;
}

std::string Screens::requested_index() const { return member(qvgetdispconf, "res"); }

bool Screens::change_waits() const {
    const Quiet quiet(chatter_);
    return qvisdispchanged() == 1;
}

void Screens::request(std::string_view index, bool keep) const {
    require_no_virtual_machine();
    if (!keep) ensure_way_back();
    const LogMark log{std::string(system_log)};
    const std::string params = fmt::format("res={}{}", index, keep ? "&force=1" : "");
    {
        const Quiet quiet(chatter_);
        qvsetdispconf(params.c_str());
    }
    if (requested_index() != index || (keep && change_waits())) {
        throw not_taken("the terminal restarts, but the resolution was not stored", log);
    }
}

/// Where nothing was ever kept the library has nothing to go back to, and lets the new resolution
/// stand at once. What is set now is what this terminal has shown so far.
void Screens::ensure_way_back() const {
    if (!stored_setting(setting_key::applied_resolution, chatter_).empty()) return;
    const LogMark log{std::string(system_log)};
    if (store_setting(setting_key::applied_resolution, requested_index(), chatter_)) return;
    throw not_taken("the resolution was not changed, as the present one could not be stored to go "
                    "back to",
                    log);
}

void Screens::keep() const {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter_);
        qvapplydispconf();
    }
    if (change_waits()) throw not_taken("the resolution was not kept", log);
}

void Screens::revert() const {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter_);
        qvrestoredispconf();
    }
    if (change_waits())
        throw not_taken("going back to the previous resolution was not stored", log);
}

const ScreenMode& Screens::mode() const {
    const std::string name = member(qvdisplaymode, "displayMode");
    const auto* const found = std::find_if(modes.begin(), modes.end(), [&](const ScreenMode& each) {
        return each.library_name == name;
    });
    return found == modes.end() ? modes[1] : *found;
}

void Screens::set_mode(const ScreenMode& mode) const {
    {
        const Quiet quiet(chatter_);
        qvsetdisplaymode(fmt::format("displayMode={}", mode.library_name).c_str());
    }
    if (this->mode().name == mode.name) return;
    throw unchanged("mode", "a virtual machine keeps its own. Otherwise check that files can be "
                            "created in /etc/X11 and /home/root.");
}

bool Screens::reversed() const { return member(qvgetdisplayorder, "displayOrder") == "Reverse"; }

void Screens::set_reversed(bool reversed) const {
    {
        const Quiet quiet(chatter_);
        qvsetdisplayorder(reversed ? "displayOrder=Reverse" : "displayOrder=Positive");
    }
    if (this->reversed() == reversed) return;
    throw unchanged("order", "check that files can be created in /etc/X11.");
}

std::string Screens::brightness() const { return member(qvgetmonitor, "brightness"); }

void Screens::set_brightness(unsigned percent) const {
    {
        const Quiet quiet(chatter_);
        qvsetmonitor(fmt::format("brightness={}", percent).c_str());
    }
    const std::string text = brightness();
    const std::optional<unsigned> shown = parse_number(text);
    if (shown && *shown + brightness_tolerance >= percent &&
        *shown <= percent + brightness_tolerance)
        return;
    if (text.empty()) {
        throw unchanged("brightness",
                        "display :0.0 did not respond. The brightness is stored and takes effect "
                        "at the next start. Check that the X server is running.");
    }
    throw unchanged("brightness", fmt::format("the first screen shows {} %.", printable(text)));
}

bool Screens::can_be_extended() const {
    const Quiet quiet(chatter_);
    return qvissupportextendscreen() == 1;
}

Json Screens::refresh() const {
    const Quiet quiet(chatter_);
    return Json(qvdisplayrefresh());
}

void Screens::set_refresh(const std::string& text) const {
    {
        const Quiet quiet(chatter_);
        qvsetdisplayrefresh(text.c_str());
    }
    const Json wanted(json_tokener_parse(text.c_str()));
    const Json stored = refresh();
    if (stored && to_line(stored) == to_line(wanted)) return;
    throw unchanged("refresh setting",
                    "it could not be saved in the terminal's numbered store. Check "
                    "that the program qvplugin is installed and works.");
}

std::string meaning_here(const ScreenMode& mode, const Outputs& outputs) {
    const std::vector<std::string> others =
        outputs ? outside(mode.arrangement, *outputs) : std::vector<std::string>();
    if (others.empty()) return std::string(mode.meaning);
    return fmt::format("{}, except {}", mode.meaning, fmt::join(others, ", "));
}

const ScreenMode& require_mode(std::string_view name) {
    std::vector<std::string_view> names;
    for (const ScreenMode& each : modes) {
        if (each.name == name) return each;
        names.push_back(each.name);
    }
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown mode \"{}\"{}: give one of {}.", printable(name),
                              did_you_mean(name, names), fmt::join(names, ", ")));
}

} // namespace qvtc::qvtcctl
