#include "qvtcctl/audio/sound_cards.hpp"
#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/stored_setting.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned full_volume = 100;

// A card rounds to its own steps; further off than this, it has not taken the value.
constexpr unsigned rounding = 10;

/// A volume of its own. The controls are those that the library looks for, in its order.
struct Channel {
    const char* name;
    const char* title;
    const char* member; ///< of the library's answer, and its parameter
    const char* setting;
    std::array<const char*, 2> controls;
};

constexpr Channel playback{
    "playback", "Playback: ", "playVolume", setting_key::playback_volume, {"Master", "Speaker"}};
constexpr Channel capture{
    "capture", "Capture:  ", "micVolume", setting_key::capture_volume, {"Mic", "Capture"}};

struct Wish {
    const Channel& channel;
    std::string words;
    std::optional<unsigned> percent;
};

void require_percentage(Wish& wish) {
    wish.percent = parse_number(wish.words);
    if (wish.percent && *wish.percent <= full_volume) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} volume \"{}\" must be a whole number from 0 to {}.",
                              wish.channel.name, printable(wish.words), full_volume));
}

bool is_onboard(const SoundCard& card) { return card.kind == CardKind::onboard; }

/// Whether the card from which the library reads reports this volume: where it reports none, the
/// library answers 0.
bool is_reported(const Channel& channel, const std::vector<SoundCard>& cards) {
    const auto onboard = std::find_if(cards.begin(), cards.end(), is_onboard);
    const unsigned card = onboard == cards.end() ? 0 : onboard->number;
    for (const char* const control : channel.controls) {
        const auto answer =
            run_program({"amixer", "-c", std::to_string(card), "sget", control}, "LC_ALL=C");
        if (answer && answer->succeeded) return answer->text.find("%]") != std::string::npos;
    }
    return false;
}

Json volumes_now(Chatter chatter) {
    const Quiet quiet(chatter);
    return Json(qvgetvolume());
}

/// Nothing when no card reports it.
std::optional<unsigned> percentage(const Json& volumes, const Channel& channel,
                                   const std::vector<SoundCard>& cards) {
    if (!volumes) throw Refusal(ExitCode::not_done, "the volumes could not be read.");
    const unsigned percent = parse_number(text_member(volumes.get(), channel.member)).value_or(0);
    if (percent == 0 && !is_reported(channel, cards)) return std::nullopt;
    return percent;
}

void require_stored(const Wish& wish, const LogMark& log, Chatter chatter) {
    if (!wish.percent) return;
    if (stored_setting(wish.channel.setting, chatter) == std::to_string(*wish.percent)) return;
    throw not_taken(fmt::format("the {} volume was not stored", wish.channel.name), log);
}

void set_volumes(const std::array<Wish, 2>& wishes, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    std::string params;
    for (const Wish& wish : wishes) {
        if (!wish.percent) continue;
        params +=
            fmt::format("{}{}={}", params.empty() ? "" : "&", wish.channel.member, *wish.percent);
    }
    {
        const Quiet quiet(chatter);
        qvsetvolume(params.c_str());
    }
    for (const Wish& wish : wishes) require_stored(wish, log, chatter);
}

Refusal not_accepted(const Channel& channel, const std::string& why) {
    return Refusal(ExitCode::not_done,
                   fmt::format("the {} volume was stored for the next start, but {}. \"qvtcctl "
                               "sound show\" lists the cards, and \"amixer\" what each can do.",
                               channel.name, why));
}

/// What is to be said of a volume that was read back; empty when it is as it was wished. Refuses
/// one that no card has accepted.
std::string judge(const Wish& wish, std::optional<unsigned> now,
                  const std::vector<SoundCard>& cards) {
    if (!wish.percent || wish.percent == now) return "";
    if (cards.empty()) throw not_accepted(wish.channel, "there is no sound card");
    if (!now && std::none_of(cards.begin(), cards.end(), is_onboard)) {
        return fmt::format("the {} volume was stored. It can be read back only from an onboard "
                           "card, and there is none.",
                           wish.channel.name);
    }
    if (!now) throw not_accepted(wish.channel, "the sound card has no such volume");
    const unsigned difference = std::max(*wish.percent, *now) - std::min(*wish.percent, *now);
    if (difference <= rounding) {
        return fmt::format("the card has no step at {} %, so the {} volume is {} %.", *wish.percent,
                           wish.channel.name, *now);
    }
    throw not_accepted(wish.channel,
                       fmt::format("the sound card is at {} %, not {} %", *now, *wish.percent));
}

std::string shown(std::optional<unsigned> percent) {
    return percent ? fmt::format("{} %", *percent) : "unknown";
}

void show(const Answer& answer, const Channel& channel, std::optional<unsigned> percent) {
    if (percent) {
        add_number(answer.json, channel.name, *percent);
    } else {
        add(answer.json, channel.name, Json());
    }
}

const Argument playback_option = option("--playback", "PERCENT", "playback volume, 0 to 100");
const Argument capture_option = option("--capture", "PERCENT", "capture volume, 0 to 100");

Answer run_volume(const Request& request) {
    std::array wishes{Wish{playback, request.text(playback_option), std::nullopt},
                      Wish{capture, request.text(capture_option), std::nullopt}};
    if (request.has(playback_option)) require_percentage(wishes[0]);
    if (request.has(capture_option)) require_percentage(wishes[1]);
    require_terminal();
    const bool changes = wishes[0].percent || wishes[1].percent;
    if (changes) set_volumes(wishes, request.chatter());
    const std::vector<SoundCard> cards = sound_cards();
    const Json volumes = volumes_now(request.chatter());
    Answer answer;
    std::vector<std::string> notes;
    answer.json = json_map();
    for (const Wish& wish : wishes) {
        const auto now = percentage(volumes, wish.channel, cards);
        answer.text += wish.channel.title + shown(now) + "\n";
        show(answer, wish.channel, now);
        std::string note = judge(wish, now, cards);
        if (note.empty() && !now)
            note = fmt::format("no sound card reports its {} volume.", wish.channel.name);
        if (!note.empty()) notes.push_back(std::move(note));
    }
    add_notes(answer, std::move(notes));
    return answer;
}

} // namespace

const Verb verbs::volume{
    .name = "volume",
    .summary = "Show or set the volumes",
    .description = "Shows the volumes in percent, or sets those that are given; 0 is "
                   "silence. A volume is set on the onboard card and on the last USB "
                   "card, and stored for the next start of the terminal's sound; it is "
                   "read from the onboard card. A chime plays at a new playback volume.",
    .examples = {"qvtcctl volume", "qvtcctl volume --playback 60",
                 "qvtcctl volume --playback 0 --capture 80"},
    .arguments = {playback_option, capture_option},
    .run = run_volume,
};

} // namespace qvtc::qvtcctl
