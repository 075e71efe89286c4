#pragma once

#include <string>

#include "core/json.hpp"

/// Which interface carries the default route.
namespace qvtc::network {

/// Adds a default route through the interface in a parameter string (eth0 when
/// it names none) unless there is one, and stores what was found or run. A string
/// of fewer than nine characters does nothing.
void set_default_route(const std::string& params);

/// The stored text, at most 1,023 bytes of it; empty when there is none.
std::string default_route_text();

/// What json-c makes of it: null for the texts that set_default_route stores.
Json default_route();

} // namespace qvtc::network
