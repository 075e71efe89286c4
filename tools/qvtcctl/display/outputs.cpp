#include "qvtcctl/display/outputs.hpp"

#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <cstdio>

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

struct Corner {
    int x = 0;
    int y = 0;
};

/// Of WIDTHxHEIGHT+X+Y; nothing when it is switched off.
std::optional<Corner> corner_of(const Output& output) {
    Corner corner;
    const std::size_t sign = output.place.find('+');
    if (sign == std::string::npos ||
        std::sscanf(output.place.c_str() + sign, "+%d+%d", &corner.x, &corner.y) != 2)
        return std::nullopt;
    return corner;
}

bool lies_so(Arrangement arrangement, const Corner& first, const Corner& other) {
    if (arrangement == Arrangement::same_place) return first.x == other.x && first.y == other.y;
    if (arrangement == Arrangement::beside) return first.x != other.x && first.y == other.y;
    return first.x == other.x && first.y != other.y;
}

} // namespace

std::vector<std::string> outside(Arrangement arrangement, const std::vector<Output>& outputs) {
    std::vector<std::string> names;
    std::optional<Corner> first;
    for (const Output& output : outputs) {
        const std::optional<Corner> corner = corner_of(output);
        if (!corner || (first && !lies_so(arrangement, *first, *corner)))
            names.push_back(output.name);
        if (!first) first = corner;
    }
    return names;
}

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
