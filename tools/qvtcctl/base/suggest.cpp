#include "qvtcctl/base/suggest.hpp"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::string lower(std::string_view word) {
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// A long word may hold more slips than a short one; one slip is always allowed.
std::size_t allowed_edits(std::string_view word) {
    return std::max<std::size_t>(1, word.size() / 3);
}

} // namespace

std::size_t edit_distance(std::string_view left, std::string_view right) {
    const std::string a = lower(left);
    const std::string b = lower(right);
    std::vector<std::vector<std::size_t>> table(a.size() + 1,
                                                std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) table[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) table[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            table[i][j] =
                std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
            }
        }
    }
    return table[a.size()][b.size()];
}

std::string closest(std::string_view word, const std::vector<std::string_view>& candidates) {
    std::size_t best_distance = allowed_edits(word) + 1;
    std::string best;
    for (const std::string_view candidate : candidates) {
        const std::size_t distance = edit_distance(word, candidate);
        if (distance < best_distance) {
            best_distance = distance;
            best = candidate;
        }
    }
    return best;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& candidates) {
    const std::string best = closest(word, candidates);
    return best.empty() ? "" : fmt::format(" (did you mean \"{}\"?)", best);
}

} // namespace qvtc::qvtcctl
