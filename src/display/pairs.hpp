#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The pairs of the parameter strings that the display settings come in.
namespace qvtc::display {

/// The value of a pair that has one; nothing when there is none.
std::optional<std::string> value_of(const std::string& params, std::string_view name);

/// The same, and the empty text for a pair without a value, "name=": to some
/// settings that is a value. A pair with one that the parser cannot reach, such
/// as any behind a bare word, is missing and not empty.
std::optional<std::string> value_or_empty_of(const std::string& params, std::string_view name);

/// Whether there is a pair of that name, whatever its value.
bool has_pair(const std::string& params, std::string_view name);

} // namespace qvtc::display
