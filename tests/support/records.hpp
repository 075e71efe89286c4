#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::test {

/// Takes the text up to the next NUL off the front of `rest`. Nothing when there is no NUL: the
/// last note of a record may be looked at while it is being written.
inline std::optional<std::string> take_field(std::string_view& rest) {
    const auto end = rest.find('\0');
    if (end == std::string_view::npos) return std::nullopt;
    std::string field(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    return field;
}

} // namespace qvtc::test
