#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

// The X server keeps the time in seconds, in 16 bits.
constexpr unsigned most_minutes = 65535 / 60;

struct Idle {
    bool on = false;
    std::string minutes = "5";

    bool operator==(const Idle&) const = default;
};

Idle stored_idle(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json answer(qvgetidle());
    if (!answer) return {};
    return {text_member(answer.get(), "monitorPowerSave") == "on",
            text_member(answer.get(), "monitorPowerSaveMins")};
}

void store_idle(const Idle& idle, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter);
        qvsetidle(fmt::format("monitorPowerSave={}&monitorPowerSaveMins={}", idle.on ? "on" : "off",
                              idle.minutes)
                      .c_str());
    }
    if (stored_idle(chatter) != idle) throw not_taken("power saving was not stored", log);
}

bool require_state(const std::string& text) {
    if (text == "on" || text == "off") return text == "on";
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("\"{}\" is not valid: give on or off.", printable(text)));
}

std::string require_minutes(const std::string& text) {
    const std::optional<unsigned> minutes = parse_number(text);
    if (minutes && *minutes >= 1 && *minutes <= most_minutes) return std::to_string(*minutes);
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("--minutes \"{}\" must be a whole number from 1 to {}.",
                              printable(text), most_minutes));
}

std::string words_of(const Idle& idle) {
    if (!idle.on) return "never switched off";
    return fmt::format("switched off after {} min without input", printable(idle.minutes));
}

Answer idle_answer(const Idle& idle, bool changed) {
    Answer answer;
    answer.text = fmt::format("The screens are {}{}.\n", changed ? "now " : "", words_of(idle));
    answer.json = json_map();
    add_flag(answer.json, "on", idle.on);
    const std::optional<unsigned> minutes = parse_number(idle.minutes);
    if (minutes) {
        add_number(answer.json, "minutes", *minutes);
    } else {
        add(answer.json, "minutes", idle.minutes);
    }
    return answer;
}

/// The stored time, or the usual one where it could not be set again.
std::string usable_minutes(const Idle& stored) {
    const std::optional<unsigned> minutes = parse_number(stored.minutes);
    return minutes && *minutes >= 1 && *minutes <= most_minutes ? stored.minutes : Idle().minutes;
}

const Argument state_argument =
    optional_argument("STATE", "on or off").completed_by(one_of({"on", "off"}));
const Argument minutes_option =
    option("--minutes", "N", fmt::format("time without input, 1 to {}", most_minutes));

Answer run_power_idle(const Request& request) {
    if (request.text(state_argument).empty() && !request.text(minutes_option).empty()) {
        throw UsageError(
            "--minutes can be used only with on: \"qvtcctl power idle on --minutes N\".");
    }
    Idle wanted;
    if (!request.text(state_argument).empty())
        wanted.on = require_state(request.text(state_argument));
    if (!request.text(minutes_option).empty())
        wanted.minutes = require_minutes(request.text(minutes_option));
    require_terminal();
    const Idle stored = stored_idle(request.chatter());
    if (request.text(state_argument).empty()) return idle_answer(stored, false);
    if (request.text(minutes_option).empty()) wanted.minutes = usable_minutes(stored);
    store_idle(wanted, request.chatter());
    return idle_answer(wanted, true);
}

} // namespace

const Verb verbs::power_idle{
    .name = "idle",
    .summary = "Show or set when idle screens are switched off",
    .description = "Shows after how many minutes without input the screens are switched off, or "
                   "sets it. Without --minutes the time that is stored stays.",
    .examples = {"qvtcctl power idle", "qvtcctl power idle on --minutes 10",
                 "qvtcctl power idle off"},
    .arguments = {state_argument, minutes_option},
    .run = run_power_idle,
};

} // namespace qvtc::qvtcctl
