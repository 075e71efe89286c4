#pragma once

#include <optional>
#include <string>

namespace qvtc::qvtcctl {

/// Asks for a password on the controlling tty, unseen, and a second time to be sure. Refuses
/// when there is no tty to ask on, or when the two differ. "instead" names the options with
/// which the password can be given otherwise.
std::string
ask_for_password(const std::string& what,
                 const std::string& instead = "--password-stdin or --gateway-password-stdin");

/// An answer to a question, typed visibly on the controlling tty; nothing when there is no tty to
/// ask on.
std::optional<std::string> ask_openly(const std::string& question);

/// One line of standard input, without its newline. Refuses when there is none.
std::string read_password_line(const std::string& what);

/// Refuses when standard input holds more than was read.
void require_end_of_input();

} // namespace qvtc::qvtcctl
