#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Running command texts under /bin/sh and reading what they print.
namespace qvtc {

/// Outcome of a capture; it says nothing about the command's success.
enum class Capture { reaped, nothing_to_reap, not_started };

/// Runs `command` and stores its standard output in `output`, zero-filled
/// before; what does not fit is dropped, and an output of `size` bytes or more
/// leaves no terminating NUL. Standard input and error stay the caller's.
Capture capture_output(const char* command, char* output, std::size_t size);

/// The same, but when the shell cannot be started, a fork of the process takes
/// its place, and this returns not_started in that child too.
Capture capture_output_or_fork(const char* command, char* output, std::size_t size);

/// The lines that `command` prints, without their newlines; nothing, with
/// errno set, when it could not be started.
std::optional<std::vector<std::string>> output_lines(const char* command);

/// The first line that `command` prints, as far as 63 bytes of it go, without
/// blanks and without what is then its last character, which is taken to be
/// the newline. Nothing (and an error in the log) when there is no line.
std::optional<std::string> first_line(const char* command);

} // namespace qvtc
