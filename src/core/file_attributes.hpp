#pragma once

#include <string>

namespace qvtc {

/// Gives an open new file the owner, the security labels, access lists and other
/// extended attributes, and the mode of the file whose place it is to take; where
/// there is none yet, `mode_of_new`. False, with errno set, when it could not be
/// given the mode. Anything else that cannot be kept is no reason to fail.
bool take_after(int descriptor, const std::string& former, unsigned mode_of_new);

} // namespace qvtc
