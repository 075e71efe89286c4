// The list of PulseAudio's sources, and the end of a device's path.

#include <string>

#include "audio/microphone.hpp"
#include "core/text.hpp"
#include "fuzzing.hpp"

using namespace qvtc;
using fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::text_of(data, size);
    const audio::WebcamSearch search = audio::find_webcam(text);
    require(search.index.size() <= 1, "one character");
    require(!search.found || !search.index.empty(), "a webcam has an index");
    require(search.index.empty() || contains(text, search.index), "a character of the text");
    require(search.index != "\n", "a character of a line");
    const bool named = contains(text, "device.form_factor = \"webcam\"");
    require(named || !search.found, "nothing is made up");
    for (const std::string& path : search.paths) {
        require(contains(path, "sysfs.path") && contains(text, path), "a line of the text");
        require(!contains(path, "\n"), "one line");
    }
    const std::string card = audio::card_in(std::string(text));
    require(card.size() <= size && contains(text, card), "a part of the text");
    return 0;
}
