#include "qvtcctl/quiet.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/sound_cards.hpp"
#include "qvtcctl/sound_verbs.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/types.hpp"

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned full_volume = 100;

// A card rounds to its own steps; further off than this, it has not taken the value.
constexpr unsigned rounding = 10;

struct Volumes {
    unsigned playback = 0;
    unsigned capture = 0;
};

struct Wish {
    std::string words;
    std::optional<unsigned> percent;
};

void require_percentage(Wish& wish, std::string_view what) {
    wish.percent = parse_number(wish.words);
    if (wish.percent && *wish.percent <= full_volume) return;
    throw Refusal(
        ExitCode::bad_usage,
        fmt::format("the {} volume \"{}\" is no percentage. Give a whole number from 0 to "
                    "{}.",
                    what, printable(wish.words), full_volume));
}

unsigned percentage(const Json& volumes, const char* member) {
    return parse_number(text_member(volumes.get(), member)).value_or(0);
}

Volumes volumes_now(Chatter chatter) {
    Json volumes;
    {
        const Quiet quiet(chatter);
        volumes.reset(qvgetvolume());
    }
    if (!volumes) throw Refusal(ExitCode::not_done, "the volumes could not be read.");
    return {percentage(volumes, "playVolume"), percentage(volumes, "micVolume")};
}

void set_volumes(const Wish& playback, const Wish& capture, Chatter chatter) {
    std::string params;
    if (playback.percent) params = fmt::format("playVolume={}", *playback.percent);
    if (capture.percent) {
        params += fmt::format("{}micVolume={}", params.empty() ? "" : "&", *capture.percent);
    }
    const Quiet quiet(chatter);
    qvsetvolume(params.c_str());
}

/// Whether there is a card from which the library reads volumes.
bool can_be_read() {
    const std::vector<SoundCard> cards = sound_cards();
    return cards.empty() || std::any_of(cards.begin(), cards.end(), [](const SoundCard& card) {
               return card.kind == CardKind::onboard;
           });
}

/// What is to be said of a volume that was read back; empty when it is as it was wished. Refuses
/// one that was not taken.
std::string judge(const Wish& wish, unsigned now, std::string_view what) {
    if (!wish.percent || *wish.percent == now) return "";
    const unsigned difference = std::max(*wish.percent, now) - std::min(*wish.percent, now);
    if (difference <= rounding) {
        return fmt::format("The card has no step at {} %, so the {} volume is {} %.", *wish.percent,
                           what, now);
    }
    throw Refusal(ExitCode::not_done,
                  fmt::format("the {} volume was stored, but the sound card did not take it: it "
                              "tells {} %, not {} %. \"qvtcctl sound show\" lists the cards, and "
                              "\"amixer\" what each can do.",
                              what, now, *wish.percent));
}

std::vector<std::string> notes_on(const Wish& playback, const Wish& capture, const Volumes& now) {
    if (!can_be_read()) {
        return {"Volumes are read from the onboard card, and there is none: what was set on the "
                "USB card cannot be read back."};
    }
    std::vector<std::string> notes = {judge(playback, now.playback, "playback"),
                                      judge(capture, now.capture, "capture")};
    std::erase(notes, "");
    return notes;
}

} // namespace

Run define_volume(CLI::App& app) {
    auto playback = std::make_shared<Wish>();
    auto capture = std::make_shared<Wish>();
    const CLI::Option* const play =
        app.add_option("--playback", playback->words, "what is heard, 0 to 100")
            ->option_text("PERCENT");
    const CLI::Option* const record =
        app.add_option("--capture", capture->words, "what is recorded, 0 to 100")
            ->option_text("PERCENT");
    return [=](const Context& context) {
        if (play->count() > 0) require_percentage(*playback, "playback");
        if (record->count() > 0) require_percentage(*capture, "capture");
        require_terminal();
        const bool changes = playback->percent || capture->percent;
        if (changes) set_volumes(*playback, *capture, context.chatter());
        const Volumes now = volumes_now(context.chatter());
        Answer answer;
        if (changes) answer.notes = notes_on(*playback, *capture, now);
        answer.text = fmt::format("Playback: {} %\nCapture:  {} %\n", now.playback, now.capture);
        answer.json = json_map();
        add_number(answer.json, "playback", now.playback);
        add_number(answer.json, "capture", now.capture);
        Json notes = json_list();
        for (const std::string& note : answer.notes) append(notes, json_text(note));
        add(answer.json, "notes", std::move(notes));
        return answer;
    };
}

} // namespace qvtc::qvtcctl
