#pragma once

#include <string>

namespace qvtc::qvtcctl {

/// Asks for a password on the controlling terminal, unseen, and a second time to be sure. Refuses
/// when there is no terminal to ask on, or when the two differ.
std::string ask_for_password(const std::string& what);

/// One line of standard input, without its newline. Refuses when there is none.
std::string read_password_line(const std::string& what);

/// Refuses when standard input holds more than was read.
void require_end_of_input();

} // namespace qvtc::qvtcctl
