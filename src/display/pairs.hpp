#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The pairs of the parameter strings that the display settings come in.
namespace qvtc::display {

/// The value of a pair that has one; nothing when there is none.
std::optional<std::string> value_of(const std::string& params, std::string_view name);

/// The same, and the empty text for a pair without a value: some settings are
/// changed by the mere presence of their name.
std::optional<std::string> value_or_empty_of(const std::string& params, std::string_view name);

} // namespace qvtc::display
