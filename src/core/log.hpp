#pragma once

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace qvtc {

enum class Level : int { debug = 0, info = 1, error = 2 };

/// No level of the log: a message under it is lost, but a missing log is created.
inline constexpr auto no_level = static_cast<Level>(-1);

/// Longest message of one log line, in bytes; the rest of a longer one is cut.
inline constexpr std::size_t log_message_limit = 10239;

/// Appends one line to the system log in one write. A level outside the enum
/// writes nothing but still creates a missing log. When the log cannot be
/// opened the message is lost: there is no better place to report that to.
void log_message(Level level, std::string_view message);

[[gnu::format(printf, 2, 0)]] void log_arguments(Level level, const char* format,
                                                 std::va_list arguments);

[[gnu::format(printf, 2, 3)]] void log(Level level, const char* format, ...);

} // namespace qvtc
