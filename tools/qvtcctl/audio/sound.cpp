#include "qvtcctl/audio/sound_cards.hpp"
#include "qvtcctl/base/confirmation.hpp"
#include "qvtcctl/base/processes.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <filesystem>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

// Its presence is the setting.

struct Hdmi {
    bool enabled;
    bool device_present;
};

Hdmi hdmi_sound(Chatter chatter) {
    const Quiet quiet(chatter);
    return {std::filesystem::exists(hdmi_marker), qvishdmiaudioenable() != 0};
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
    return all;
}

std::string cards_text(const std::vector<SoundCard>& cards, std::optional<unsigned> chosen) {
    if (cards.empty()) return "There is no sound card that can play.\n";
    std::vector<Row> rows{{"CARD", "KIND", "NAME", "DEVICES", "DEFAULT"}};
    for (const SoundCard& card : cards) {
        rows.push_back({std::to_string(card.number), std::string(title_of(card.kind)), card.name,
                        joined(card.devices), card.number == chosen ? "yes" : "-"});
    }
    return layout(rows);
}

std::string default_text(const std::vector<SoundCard>& cards, std::optional<unsigned> chosen) {
    if (!chosen) return "No card has been made the default.\n";
    if (find_card(cards, *chosen) != nullptr) return "";
    return fmt::format("The default is card {}, which is not there.\n", *chosen);
}

std::string hdmi_text(const Hdmi& hdmi) {
    return fmt::format("HDMI sound is switched {}, and {} HDMI device is there.\n",
                       hdmi.enabled ? "on" : "off", hdmi.device_present ? "an" : "no");
}

Json card_json(const SoundCard& card, std::optional<unsigned> chosen) {
    Json map = json_map();
    add_number(map, "card", card.number);
    add(map, "kind", name_of(card.kind));
    add(map, "name", card.name);
    Json devices = json_list();
    for (const std::string& device : card.devices) append(devices, json_text(device));
    add(map, "devices", std::move(devices));
    add_flag(map, "default", card.number == chosen);
    return map;
}

Json sound_json(const std::vector<SoundCard>& cards, std::optional<unsigned> chosen,
                const Hdmi& hdmi) {
    Json list = json_list();
    for (const SoundCard& card : cards) append(list, card_json(card, chosen));
    Json map = json_map();
    add(map, "cards", std::move(list));
    if (chosen) {
        add_number(map, "defaultCard", *chosen);
    } else {
        add(map, "defaultCard", Json());
    }
    Json state = json_map();
    add_flag(state, "switchedOn", hdmi.enabled);
    add_flag(state, "devicePresent", hdmi.device_present);
    add(map, "hdmi", std::move(state));
    return map;
}

/// The card with that number; refuses what is none.
SoundCard require_card(const std::string& word, const std::vector<SoundCard>& cards) {
    const std::optional<unsigned> number = parse_number(word);
    const SoundCard* const card = number ? find_card(cards, *number) : nullptr;
    if (card != nullptr) return *card;
    std::vector<std::string> numbers;
    for (const SoundCard& each : cards) numbers.push_back(std::to_string(each.number));
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("\"{}\" is not a sound card that can play. {}", printable(word),
                              cards.empty() ? "There is none."
                                            : fmt::format("There are: {}.", joined(numbers))));
}

void configure(const SoundCard& card, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter);
        set_sound_config(card.number);
    }
    if (default_card() == card.number) return;
    const std::string complaint = last_complaint(log.added());
    throw Refusal(
        ExitCode::not_done,
        fmt::format(
            "card {} was not made the default: /etc/asound.conf could not be saved. Check "
            "that /etc can be written and that its disk is not full.{}",
            card.number,
            complaint.empty() ? "" : fmt::format(" The library's log says: \"{}\".", complaint)));
}

const Argument card_argument =
    required_argument("CARD", "number of the card, as \"sound show\" lists it");

Answer run_sound_show(const Request& request) {
    require_terminal();
    const std::vector<SoundCard> cards = sound_cards();
    const std::optional<unsigned> chosen = default_card();
    const Hdmi hdmi = hdmi_sound(request.chatter());
    Answer answer;
    answer.text = cards_text(cards, chosen) + default_text(cards, chosen) + hdmi_text(hdmi);
    answer.json = sound_json(cards, chosen, hdmi);
    return answer;
}

Answer run_sound_configure(const Request& request) {
    require_terminal();
    const SoundCard card = require_card(request.text(card_argument), sound_cards());
    require_consent(request.has(yes_flag),
                    "This ends the running RDP clients and restarts PulseAudio.");
    configure(card, request.chatter());
    Answer answer;
    answer.text =
        fmt::format("Card {} ({}) is now the default.\n", card.number, printable(card.name));
    answer.json = json_map();
    add_number(answer.json, "defaultCard", card.number);
    const bool runs = !running_processes("pulseaudio").empty();
    add_flag(answer.json, "pulseAudioRuns", runs);
    if (!runs) {
        answer.notes.emplace_back("PulseAudio is not running. \"pulseaudio --start\" says why.");
    }
    return answer;
}

} // namespace

const Verb verbs::sound_show{
    .name = "show",
    .summary = "Show the sound cards",
    .description = "Lists the sound cards that can play, says which of them is the default, and "
                   "whether sound goes to HDMI instead.",
    .examples = {"qvtcctl sound show", "qvtcctl sound show --json"},
    .run = run_sound_show,
};

const Verb verbs::sound_configure{
    .name = "configure",
    .summary = "Make a sound card the default",
    .description = "Makes a sound card the default for playing and recording, and a USB "
                   "webcam's microphone the default source. This ends the running RDP clients "
                   "and restarts PulseAudio, so you are asked first.",
    .examples = {"qvtcctl sound configure 1", "qvtcctl sound configure 1 --yes"},
    .arguments = {card_argument, yes_flag},
    .run = run_sound_configure,
};

} // namespace qvtc::qvtcctl
