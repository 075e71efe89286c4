#include "qvtcctl/outputs.hpp"

#include "qvtcctl/program.hpp"
#include "qvtcctl/text.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

std::vector<std::string_view> words_of(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        if (end > 0) words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

bool is_place(std::string_view word) {
    return !word.empty() && word.front() >= '0' && word.front() <= '9' &&
           word.find('x') != std::string_view::npos && word.find('+') != std::string_view::npos;
}

} // namespace

std::vector<Output> connected_outputs(std::string_view listing) {
    std::vector<Output> outputs;
    for (const std::string_view line : split_lines(listing)) {
        const std::vector<std::string_view> words = words_of(line);
        if (words.size() < 2 || words[1] != "connected") continue;
        const auto place = std::find_if(words.begin() + 2, words.end(), is_place);
        outputs.push_back({std::string(words[0]), place == words.end() ? "" : std::string(*place)});
    }
    return outputs;
}

std::optional<std::vector<Output>> connected_outputs() {
    const std::optional<ProgramOutput> listing = run_program({"xrandr"}, "DISPLAY=:0.0");
    if (!listing || !listing->succeeded) return std::nullopt;
    return connected_outputs(listing->text);
}

} // namespace qvtc::qvtcctl
