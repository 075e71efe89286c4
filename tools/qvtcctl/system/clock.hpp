#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// A time by hand: "YYYY-MM-DD hh:mm" or with ":ss" after it, a time that exists; std::nullopt
/// otherwise. The time zone is left open.
std::optional<std::tm> parse_time(const std::string& text);

} // namespace qvtc::qvtcctl
