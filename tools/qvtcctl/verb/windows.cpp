#include "qvtcctl/verb/windows.hpp"

#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <vector>

namespace qvtc::qvtcctl {

bool names_window(std::string_view tree, std::string_view pattern) {
    const std::vector<std::string_view> lines = split_lines(tree);
    return std::any_of(lines.begin(), lines.end(), [pattern](std::string_view line) {
        return line.find(pattern) != std::string_view::npos;
    });
}

Sight look_for_window(std::string_view pattern) {
    const std::optional<ProgramOutput> tree =
        run_program({"xwininfo", "-root", "-tree"}, "DISPLAY=:0.0");
    if (!tree || !tree->succeeded) return Sight::unknown;
    return names_window(tree->text, pattern) ? Sight::seen : Sight::absent;
}

} // namespace qvtc::qvtcctl
