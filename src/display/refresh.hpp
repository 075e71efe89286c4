#pragma once

#include "core/json.hpp"

/// The display refresh setting: a JSON text that only the front-end understands.
namespace qvtc::display {

/// Null when none is stored, or none that is JSON. Leaves the text in the shared
/// scratch area.
Json refresh();

/// As store::write_numbered().
int store_refresh(const char* text);

} // namespace qvtc::display
