#pragma once

#include <string>

#include "core/json.hpp"

namespace qvtc::system {

/// The password of the front-end's manager screens, in clear text, as
/// {"password": text}: empty when none is set. At most 255 bytes.
Json manager_password();

/// Stores the parameter "password", or none when it is absent. It is kept as it
/// is given: comparing it is the front-end's business.
void set_manager_password(const char* params);

} // namespace qvtc::system
