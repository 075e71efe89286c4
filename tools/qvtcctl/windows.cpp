#include "qvtcctl/windows.hpp"

#include "qvtcctl/screen_question.hpp"
#include "qvtcctl/text.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

bool names_window(std::string_view tree, std::string_view pattern) {
    const std::vector<std::string_view> lines = split_lines(tree);
    return std::any_of(lines.begin(), lines.end(), [pattern](std::string_view line) {
        return line.find(pattern) != std::string_view::npos;
    });
}

Sight look_for_window(std::string_view pattern) {
    const std::optional<std::string> tree = ask_the_screen({"xwininfo", "-root", "-tree"});
    if (!tree) return Sight::unknown;
    return names_window(*tree, pattern) ? Sight::seen : Sight::absent;
}

} // namespace qvtc::qvtcctl
