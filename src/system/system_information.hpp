#pragma once

#include "core/json.hpp"

namespace qvtc::system {

/// What the terminal is: an object of texts with the members of the table of
/// facts, in its order. What cannot be read has its default.
Json system_information();

} // namespace qvtc::system
