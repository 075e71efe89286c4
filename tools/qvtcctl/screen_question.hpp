#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// What a program prints about display :0.0; nothing when it cannot be run, fails, or takes more
/// than three seconds. "words" are its name and its arguments.
std::optional<std::string> ask_the_screen(std::vector<std::string> words);

} // namespace qvtc::qvtcctl
