#include "qvtcctl/base/confirmation.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/display/outputs.hpp"
#include "qvtcctl/display/resolutions.hpp"
#include "qvtcctl/display/screens.hpp"
#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <memory>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned darkest = 20;
constexpr unsigned brightest = 100;
constexpr std::size_t longest_refresh = 10239;

Answer answer_of(std::string text, const char* key, std::string_view value) {
    Answer answer;
    answer.text = std::move(text);
    answer.json = json_map();
    add(answer.json, key, value);
    return answer;
}

unsigned require_brightness(const std::string& text) {
    const std::optional<unsigned> percent = parse_number(text);
    if (percent && *percent >= darkest && *percent <= brightest) return *percent;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("brightness \"{}\" must be a whole number from {} to {}, without a "
                              "percent sign.",
                              printable(text), darkest, brightest));
}

bool require_order(const std::string& text) {
    if (text == "usual" || text == "reverse") return text == "reverse";
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown order \"{}\": give usual or reverse.", printable(text)));
}

void require_refresh(const std::string& text) {
    if (text.size() > longest_refresh) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("the refresh setting has {} bytes; at most {} are allowed.",
                                  text.size(), longest_refresh));
    }
    const Json parsed(json_tokener_parse(text.c_str()));
    if (is_utf8(text) && parsed && json_object_is_type(parsed.get(), json_type_object) != 0) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("refresh setting \"{}\" is not a JSON object. Write one as "
                              "'{{\"rate\": 60}}', in single quotes for the shell.",
                              printable(text.substr(0, 60))));
}

/// What to know of a mode that was set, with these screens connected.
std::string note_on(const ScreenMode& mode, const Outputs& outputs) {
    if (!outputs) return "display :0.0 did not respond, so what the screens show is not known.";
    if (outputs->size() < 2) {
        return "fewer than two screens are connected, so the mode has no effect until another one "
               "is.";
    }
    const std::vector<std::string> others = outside(mode.arrangement, *outputs);
    if (others.empty()) return "";
    return fmt::format("left as before: {}. The terminal arranges two screens that are switched "
                       "on.",
                       fmt::join(others, ", "));
}

Answer changed_resolution(const Resolution& resolution, bool keep, bool waits) {
    Answer answer = answer_of(
        fmt::format("The resolution is now {}, and the terminal restarts.{}\n", resolution.name,
                    waits ? " The change is pending: \"qvtcctl display keep\" keeps it, "
                            "\"qvtcctl display revert\" goes back."
                          : ""),
        "resolution", resolution.name);
    add_flag(answer.json, "changeWaits", waits);
    std::vector<std::string> notes;
    if (!waits && !keep) {
        notes.emplace_back("no change is pending: this resolution was kept before.");
    }
    if (resolution.index == "0") {
        notes.emplace_back("the terminal's display script treats 800x600 as auto.");
    }
    add_notes(answer, std::move(notes));
    return answer;
}

std::vector<std::string> resolution_words(const std::string&) {
    std::vector<std::string> words;
    for (const Resolution& resolution : resolutions) words.emplace_back(resolution.name);
    return words;
}

const Argument resolution_argument =
    required_argument("RESOLUTION", "auto, or WIDTHxHEIGHT").completed_by(resolution_words);
const Argument keep_flag = flag("--keep", "keep it at once, with no change pending");
const Argument restart_flag = flag("--yes", "do not ask before the restart");
const Argument mode_argument = optional_argument("MODE", "clone, extend or vertical")
                                   .completed_by(one_of({"clone", "extend", "vertical"}));
const Argument order_argument =
    optional_argument("ORDER", "usual or reverse").completed_by(one_of({"usual", "reverse"}));
const Argument percent_argument = optional_argument("PERCENT", "20 to 100");
const Argument refresh_argument = optional_argument("JSON", "the setting, a JSON object");

Answer run_display_set(const Request& request) {
    const Resolution& resolution = require_resolution(request.text(resolution_argument));
    const Screens screens(request.chatter());
    require_consent(request.has(restart_flag),
                    fmt::format("This sets the resolution to {} and restarts the terminal at "
                                "once.",
                                resolution.name));
    screens.request(resolution.index, request.has(keep_flag));
    return changed_resolution(resolution, request.has(keep_flag), screens.change_waits());
}

Answer run_display_keep(const Request& request) {
    const Screens screens(request.chatter());
    const bool waited = screens.change_waits();
    if (waited) screens.keep();
    const std::string name = resolution_name(screens.requested_index());
    return answer_of(waited ? fmt::format("The resolution {} is kept.\n", name)
                            : fmt::format("No change is pending: the resolution is {}.\n", name),
                     "resolution", name);
}

Answer run_display_revert(const Request& request) {
    const Screens screens(request.chatter());
    const bool waited = screens.change_waits();
    if (waited) screens.revert();
    const std::string name = resolution_name(screens.requested_index());
    return answer_of(waited ? fmt::format("Back to the resolution {}.\n", name)
                            : fmt::format("No change is pending: the resolution is {}.\n", name),
                     "resolution", name);
}

Answer run_display_mode(const Request& request) {
    const std::string& name = request.text(mode_argument);
    const ScreenMode* const wanted = name.empty() ? nullptr : &require_mode(name);
    const Screens screens(request.chatter());
    if (wanted != nullptr) screens.set_mode(*wanted);
    const ScreenMode& mode = screens.mode();
    const Outputs outputs = connected_outputs();
    Answer answer = answer_of(fmt::format("{}{}: {}.\n", wanted ? "The mode is now " : "",
                                          mode.name, meaning_here(mode, outputs)),
                              "mode", mode.name);
    if (const std::string note = note_on(mode, outputs); wanted != nullptr && !note.empty())
        add_notes(answer, {note});
    return answer;
}

Answer run_display_order(const Request& request) {
    const std::string& name = request.text(order_argument);
    const bool reverse = !name.empty() && require_order(name);
    const Screens screens(request.chatter());
    if (!name.empty()) screens.set_reversed(reverse);
    const std::string order = screens.reversed() ? "reverse" : "usual";
    const std::string words = name.empty() ? "" : "The order of the screens is now ";
    return answer_of(fmt::format("{}{}{}\n", words, order, words.empty() ? "" : "."), "order",
                     order);
}

Answer run_display_brightness(const Request& request) {
    const std::string& text = request.text(percent_argument);
    const unsigned wanted = text.empty() ? 0 : require_brightness(text);
    const Screens screens(request.chatter());
    if (wanted != 0) screens.set_brightness(wanted);
    const std::string shown = wanted != 0 ? std::to_string(wanted) : screens.brightness();
    Answer answer;
    answer.text = wanted != 0     ? fmt::format("The brightness is now {} %.\n", shown)
                  : shown.empty() ? "Display :0.0 does not report its brightness.\n"
                                  : fmt::format("{} %\n", printable(shown));
    answer.json = json_map();
    const std::optional<unsigned> percent = parse_number(shown);
    if (percent) {
        add_number(answer.json, "brightness", *percent);
    } else {
        add(answer.json, "brightness", Json());
    }
    return answer;
}

Answer run_display_refresh(const Request& request) {
    const std::string& text = request.text(refresh_argument);
    if (!text.empty()) require_refresh(text);
    const Screens screens(request.chatter());
    if (!text.empty()) screens.set_refresh(text);
    Json stored = screens.refresh();
    Answer answer;
    answer.text = stored ? (text.empty() ? "" : "The refresh setting is now ") + to_line(stored)
                         : "No refresh setting is stored.\n";
    answer.json = json_map();
    add(answer.json, "refresh", std::move(stored));
    return answer;
}

} // namespace

const Verb verbs::display_set{
    .name = "set",
    .summary = "Set the resolution, and restart",
    .description = "Sets the resolution of all screens and restarts the terminal at once. "
                   "The change is then pending: \"keep\" keeps it, \"revert\" goes back "
                   "to the previous resolution.",
    .examples = {"qvtcctl display set 1920x1080", "qvtcctl display set auto --keep --yes"},
    .arguments = {resolution_argument, keep_flag, restart_flag},
    .run = run_display_set,
};

const Verb verbs::display_keep{
    .name = "keep",
    .summary = "Keep a changed resolution",
    .description = "Keeps the resolution that \"set\" has changed.",
    .examples = {"qvtcctl display keep"},
    .run = run_display_keep,
};

const Verb verbs::display_revert{
    .name = "revert",
    .summary = "Go back to the previous resolution",
    .description = "Goes back to the resolution that was kept last and applies it to the "
                   "screens. There is no restart.",
    .examples = {"qvtcctl display revert"},
    .run = run_display_revert,
};

const Verb verbs::display_mode{
    .name = "mode",
    .summary = "Show or set what several screens show",
    .description = "Shows what several screens show, or sets it: clone (all the same), extend "
                   "(one desktop, side by side) or vertical (one desktop, one above the other). "
                   "The terminal arranges two screens; more than two are left as they are.",
    .examples = {"qvtcctl display mode", "qvtcctl display mode extend"},
    .arguments = {mode_argument},
    .run = run_display_mode,
};

const Verb verbs::display_order{
    .name = "order",
    .summary = "Show or set the order of two screens",
    .description = "Shows the order of two screens, or sets it: usual or reverse.",
    .examples = {"qvtcctl display order", "qvtcctl display order reverse"},
    .arguments = {order_argument},
    .run = run_display_order,
};

const Verb verbs::display_brightness{
    .name = "brightness",
    .summary = "Show or set the brightness",
    .description = "Shows the brightness of the first screen in percent, or sets that of all "
                   "screens.",
    .examples = {"qvtcctl display brightness", "qvtcctl display brightness 80"},
    .arguments = {percent_argument},
    .run = run_display_brightness,
};

const Verb verbs::display_refresh{
    .name = "refresh",
    .summary = "Show or set the refresh setting",
    .description = "Shows the display refresh setting, or sets it. It is a JSON object that "
                   "only the terminal's front-end understands.",
    .examples = {"qvtcctl display refresh", "qvtcctl display refresh '{\"rate\": 60}'"},
    .arguments = {refresh_argument},
    .run = run_display_refresh,
};

} // namespace qvtc::qvtcctl
