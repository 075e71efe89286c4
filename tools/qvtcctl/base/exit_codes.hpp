#pragma once

#include <array>
#include <string_view>

namespace qvtc::qvtcctl {

/// What the program's exit status says. The man page holds this same table.
enum class ExitCode {
    done = 0,
    not_done = 1,
    bad_usage = 2,
    not_found = 3,
    connection_failed = 4,
    timeout = 5,
    not_possible = 6,
};

struct ExitCodeRow {
    ExitCode code;
    std::string_view name;    ///< as in the JSON form of an error
    std::string_view meaning; ///< as in the help and in the man page
};

// clang-format off
inline constexpr std::array<ExitCodeRow, 7> exit_codes{{
    {ExitCode::done,              "done",              "Done. For launch --wait and status: connected, or connected to an RDP server that asks for the logon itself."},
    {ExitCode::not_done,          "not-done",          "The request was valid but could not be carried out."},
    {ExitCode::bad_usage,         "bad-usage",         "Bad usage, or a value that was refused. Nothing was changed."},
    {ExitCode::not_found,         "not-found",         "There is no such connection. Nothing was changed."},
    {ExitCode::connection_failed, "connection-failed", "The connection failed. For status also: its client is not running. For doctor: there is a problem."},
    {ExitCode::timeout,           "timeout",           "No outcome yet. For launch --wait: none within the time given."},
    {ExitCode::not_possible,      "not-possible",      "Not possible here: not root, or not a terminal of this kind."},
}};
// clang-format on

constexpr std::string_view exit_code_name(ExitCode code) {
    return exit_codes[static_cast<std::size_t>(code)].name;
}

} // namespace qvtc::qvtcctl
