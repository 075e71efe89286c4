#pragma once

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

using Row = std::vector<std::string>;

/// Columns side by side, as wide as their longest cell, two blanks apart; no line ends in blanks.
/// The first row holds the headings. Cells are made printable.
std::string layout(const std::vector<Row>& rows);

} // namespace qvtc::qvtcctl
