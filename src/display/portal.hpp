#pragma once

#include <string>

#include "core/json.hpp"

/// Whether the terminal starts with the user portal.
namespace qvtc::display {

/// {"useUserportal": "off"} when the stored text contains "off", else "on".
Json user_portal();

/// Stores the value of one pair, whatever its name; a text that is no such pair
/// stores nothing.
void set_user_portal(const std::string& params);

} // namespace qvtc::display
