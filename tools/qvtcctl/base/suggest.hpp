#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// Number of single-character edits (insert, delete, change, swap neighbours) between two words,
/// upper and lower case being the same.
std::size_t edit_distance(std::string_view left, std::string_view right);

/// The candidate that was probably meant; empty when none comes near.
std::string closest(std::string_view word, const std::vector<std::string_view>& candidates);

/// " (did you mean \"X\"?)", or an empty text when nothing comes near.
std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& candidates);

} // namespace qvtc::qvtcctl
