#pragma once

#include <array>
#include <string>

namespace qvtc::test {

/// The terminal's own shell is bash under the name of sh; a distribution's may be dash.
inline constexpr std::array shells = {"/bin/bash", "/bin/dash"};

/// What `shell`, under the name of sh, prints for `text`.
std::string output_of(const char* shell, const std::string& text);

} // namespace qvtc::test
