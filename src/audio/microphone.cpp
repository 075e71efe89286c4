#include "audio/microphone.hpp"

#include <algorithm>

#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::audio {

namespace {

constexpr std::size_t listing_limit = 1'024'000;
constexpr std::size_t shortest_listing = 101;
constexpr std::size_t value_limit = 64;
// The kernel refuses a command text of 128 KiB; that of so long a line is not run.
constexpr std::size_t command_limit = 102'400;

/// The index that a line gives, or the former one if it gives none.
std::string index_in(std::string_view line, std::string former) {
    const std::size_t start = line.find(':') + 2;
    // Deliberate: of an index of several digits only the last one counts.
    return line.size() > start ? std::string(1, line.back()) : std::move(former);
}

std::string card_of(const std::string& path_line) {
    const std::string command =
        textf("CARD='%s';echo ${CARD##*/}", shell::in_single(path_line).c_str());
    if (command.size() > command_limit) return {};
    return card_in(os().capture(command, value_limit));
}

void raise_capture_volume(const std::string& card) {
    const std::string quoted_card = shell::bare(card);
    std::string most = os().capture(textf("amixer -c %s cget name='Mic Capture Volume'|grep type|"
                                          "grep max|awk -F ',' {print'$5'}|awk -F '=' {print'$2'}",
                                          quoted_card.c_str()),
                                    value_limit);
    if (most.empty()) return;
    most.pop_back(); // the newline
    os().run(textf("amixer -c %s cset name='Mic Capture Volume' %s >/dev/null 2>&1",
                   quoted_card.c_str(), shell::bare(most).c_str()));
}

} // namespace

WebcamSearch find_webcam(std::string_view listing) {
    WebcamSearch search;
    while (!listing.empty()) {
        const std::size_t length = std::min(listing.find('\n'), listing.size());
        const std::string_view line = listing.substr(0, length);
        listing.remove_prefix(std::min(length + 1, listing.size()));
        if (contains(line, "index:")) search.index = index_in(line, std::move(search.index));
        if (contains(line, "sysfs.path")) search.paths.emplace_back(line);
        if (contains(line, "device.form_factor = \"webcam\"") && !search.index.empty()) {
            search.found = true;
            break;
        }
    }
    return search;
}

std::string card_in(const std::string& path_end) {
    constexpr std::string_view mark = "card";
    const std::size_t at = path_end.find(mark);
    if (at == std::string::npos) return path_end;
    const std::string number = path_end.substr(at + mark.size());
    const std::size_t digits = number.find_first_not_of("0123456789");
    return number.substr(0, std::max<std::size_t>(digits, 1));
}

void prefer_webcam_microphone() {
    const std::string listing = os().capture("pacmd list-sources", listing_limit);
    if (listing.size() < shortest_listing) return;
    const WebcamSearch webcam = find_webcam(listing);
    std::string card;
    for (const std::string& line : webcam.paths) card = card_of(line);
    if (!webcam.found) return;
    os().run(
        textf("pacmd set-default-source %s >/dev/null 2>&1", shell::bare(webcam.index).c_str()));
    // Deliberate: the volume of a card whose number has two digits stays as it is.
    if (card.size() == 1) raise_capture_volume(card);
}

} // namespace qvtc::audio
