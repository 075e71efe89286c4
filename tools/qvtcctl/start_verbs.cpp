// How the terminal's front-end starts: user portal and demo mode.
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/verb.hpp"

#include <array>
#include <cctype>
#include <memory>

#include <CLI/CLI.hpp>
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

constexpr Switch portal = {
    "the user portal", "portal",
    [] { return text_member(Json(qvgetuserportal()).get(), "useUserportal") == "on"; },
    [](bool on) { qvsetuserportal(on ? "useUserportal=on" : "useUserportal=off"); }};

constexpr Switch demo_mode = {"demo mode", "demoMode", [] { return qvdemomode() == 1; },
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

Run define_switch(CLI::App& app, const Switch& which) {
    auto state = std::make_shared<std::string>();
    app.add_option("STATE", *state, "on or off");
    return [state, &which](const Context& context) {
        const bool wanted = !state->empty() && require_on_or_off(which, *state);
        require_terminal();
        if (!state->empty()) turn(which, wanted, context.chatter());
        const bool on = is_on(which, context.chatter());
        Answer answer;
        answer.text = fmt::format("{} is {}{}.\n", which.title, state->empty() ? "" : "now ",
                                  on ? "on" : "off");
        answer.text.front() = static_cast<char>(std::toupper(answer.text.front()));
        answer.json = json_map();
        add_flag(answer.json, which.json_key, on);
        return answer;
    };
}

Run define_portal(CLI::App& app) { return define_switch(app, portal); }
Run define_demo_mode(CLI::App& app) { return define_switch(app, demo_mode); }

// clang-format off
constexpr std::array<Verb, 2> table{{
    {"portal", "Show or set whether the terminal starts with the user portal",
     "Shows whether the terminal's front-end starts with the user portal, or sets it.",
     "qvtcctl portal\n"
     "qvtcctl portal off",
     define_portal},
    {"demo-mode", "Show or set demo mode",
     "Shows whether demo mode is on, or switches it on or off.",
     "qvtcctl demo-mode\n"
     "qvtcctl demo-mode on",
     define_demo_mode},
}};
// clang-format on

} // namespace

std::span<const Verb> start_verbs() { return table; }

} // namespace qvtc::qvtcctl
