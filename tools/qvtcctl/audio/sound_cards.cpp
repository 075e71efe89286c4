#include "qvtcctl/audio/sound_cards.hpp"

#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/system_log.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

constexpr std::uintmax_t longest_configuration = 64UL * 1024;

/// What stands between two marks, with the rest of the text behind them; nothing when one of
/// them is missing.
std::optional<std::string_view> take_between(std::string_view& text, std::string_view before,
                                             std::string_view after) {
    const std::size_t start = text.find(before);
    if (start == std::string_view::npos) return std::nullopt;
    text.remove_prefix(start + before.size());
    const std::size_t end = text.find(after);
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end + after.size());
    return part;
}

CardKind kind_of_line(std::string_view line) {
    if (line.find("USB") != std::string_view::npos) return CardKind::usb;
    return line.find("HDMI") != std::string_view::npos ? CardKind::hdmi : CardKind::onboard;
}

struct ListedDevice {
    unsigned card;
    std::string_view card_name;
    std::string_view device;
};

/// "card 1: PCH [HDA Intel PCH], device 0: ALC236 Analog [ALC236 Analog]"
std::optional<ListedDevice> parse_device(std::string_view line) {
    if (!line.starts_with("card ")) return std::nullopt;
    const auto number = take_between(line, "card ", ": ");
    const std::optional<unsigned> card = number ? parse_number(*number) : std::nullopt;
    const auto name = take_between(line, "[", "], device ");
    const auto device = take_between(line, ": ", " [");
    if (!card || !name || !device) return std::nullopt;
    return ListedDevice{*card, *name, *device};
}

} // namespace

std::string_view title_of(CardKind kind) {
    return kind == CardKind::hdmi ? "HDMI" : kind == CardKind::usb ? "USB" : "onboard";
}

std::string_view name_of(CardKind kind) {
    return kind == CardKind::hdmi ? "hdmi" : kind == CardKind::usb ? "usb" : "onboard";
}

std::vector<SoundCard> parse_sound_cards(std::string_view list) {
    std::vector<SoundCard> cards;
    for (const std::string_view line : split_lines(list)) {
        const std::optional<ListedDevice> listed = parse_device(line);
        if (!listed) continue;
        if (cards.empty() || cards.back().number != listed->card) {
            cards.push_back({listed->card, std::string(listed->card_name), kind_of_line(line), {}});
        }
        if (kind_of_line(line) != CardKind::hdmi) cards.back().kind = kind_of_line(line);
        cards.back().devices.emplace_back(listed->device);
    }
    return cards;
}

std::optional<unsigned> default_card_in(std::string_view asound_conf) {
    std::optional<unsigned> card;
    for (const std::string_view line : split_lines(asound_conf)) {
        const std::string_view words = trimmed(line);
        if (words.starts_with("card ")) card = parse_number(words.substr(5));
    }
    return card;
}

std::vector<SoundCard> sound_cards() {
    const std::optional<ProgramOutput> list = run_program({"aplay", "-l"}, "LC_ALL=C");
    if (list) return parse_sound_cards(list->text); // it fails when there is no card
    throw Refusal(ExitCode::not_done, "the sound cards could not be listed: aplay did not answer. "
                                      "Check that it is installed.");
}

std::optional<unsigned> default_card() {
    return default_card_in(file_tail("/etc/asound.conf", longest_configuration));
}

const SoundCard* find_card(const std::vector<SoundCard>& cards, unsigned number) {
    const auto found = std::find_if(cards.begin(), cards.end(), [number](const SoundCard& card) {
        return card.number == number;
    });
    return found == cards.end() ? nullptr : &*found;
}

} // namespace qvtc::qvtcctl
