#pragma once

#include <string>

#include "core/json.hpp"

/// Switching the screens off after a time without input.
namespace qvtc::display {

/// Puts the stored power saving into force; without one it is switched off. For
/// the start of the library.
void start();

/// Puts power saving into force and stores it: "monitorPowerSave" is "on", or
/// any other value for off, "monitorPowerSaveMins" the time in minutes. The text
/// is stored also when it puts nothing into force; one of fewer than 9 characters
/// is ignored.
void set_power_saving(const std::string& params);

/// {"monitorPowerSave": ..., "monitorPowerSaveMins": ...}; off and 5 when none is
/// stored. Null for a stored text that is too short to hold any.
Json power_saving();

} // namespace qvtc::display
