#pragma once

#include "qvtcctl/verb.hpp"

#include <ctime>
#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// A time by hand: "YYYY-MM-DD hh:mm" or with ":ss" behind it, a time that exists. Nothing
/// otherwise. The time zone is left open.
std::optional<std::tm> parse_time(const std::string& text);

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_time(CLI::App& app);
Run define_information(CLI::App& app);
Run define_factory_reset(CLI::App& app);

} // namespace qvtc::qvtcctl
