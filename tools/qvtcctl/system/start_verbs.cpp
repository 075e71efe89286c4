// How the terminal's front-end starts: user portal and demo mode.
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <cctype>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// A setting that is on or off.
struct Switch {
    const char* title;
    const char* json_key;
    bool (*get)();
    void (*set)(bool on);
};

constexpr Switch user_portal_switch = {
    "the user portal", "portal",
    [] { return text_member(Json(qvgetuserportal()).get(), "useUserportal") == "on"; },
    [](bool on) { qvsetuserportal(on ? "useUserportal=on" : "useUserportal=off"); }};

constexpr Switch demo_mode_switch = {"demo mode", "demoMode", [] { return qvdemomode() == 1; },
                                     [](bool on) { qvsetdemomode(on ? 1 : 0); }};

bool require_on_or_off(const Switch& which, const std::string& text) {
    if (text == "on" || text == "off") return text == "on";
    throw Refusal(ExitCode::bad_usage, fmt::format("\"{}\" is not valid for {}: give on or off.",
                                                   printable(text), which.title));
}

bool is_on(const Switch& which, Chatter chatter) {
    const Quiet quiet(chatter);
    return which.get();
}

void turn(const Switch& which, bool on, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter);
        which.set(on);
    }
    if (is_on(which, chatter) != on) {
        throw not_taken(fmt::format("{} was not switched {}", which.title, on ? "on" : "off"), log);
    }
}

const Argument state_argument =
    optional_argument("STATE", "on or off").completed_by(one_of({"on", "off"}));

Answer show_or_turn(const Switch& which, const Request& request) {
    const std::string& state = request.text(state_argument);
    const bool wanted = !state.empty() && require_on_or_off(which, state);
    require_terminal();
    if (!state.empty()) turn(which, wanted, request.chatter());
    const bool on = is_on(which, request.chatter());
    Answer answer;
    answer.text =
        fmt::format("{} is {}{}.\n", which.title, state.empty() ? "" : "now ", on ? "on" : "off");
    answer.text.front() = static_cast<char>(std::toupper(answer.text.front()));
    answer.json = json_map();
    add_flag(answer.json, which.json_key, on);
    return answer;
}

Answer run_portal(const Request& request) { return show_or_turn(user_portal_switch, request); }
Answer run_demo_mode(const Request& request) { return show_or_turn(demo_mode_switch, request); }

} // namespace

const Verb verbs::portal{
    .name = "portal",
    .summary = "Show or set whether the terminal starts with the user portal",
    .description = "Shows whether the terminal's front-end starts with the user portal, or sets "
                   "it.",
    .examples = {"qvtcctl portal", "qvtcctl portal off"},
    .arguments = {state_argument},
    .run = run_portal,
};

const Verb verbs::demo_mode{
    .name = "demo-mode",
    .summary = "Show or set demo mode",
    .description = "Shows whether demo mode is on, or switches it on or off.",
    .examples = {"qvtcctl demo-mode", "qvtcctl demo-mode on"},
    .arguments = {state_argument},
    .run = run_demo_mode,
};

} // namespace qvtc::qvtcctl
