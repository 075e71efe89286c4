#pragma once

#include <string>

namespace qvtc::api {

/// The interface language: one of the three that the front-end is translated to
/// when the setting names one, else the setting as it is, also empty.
std::string language();

/// Stores the "language" of a parameter string and puts its picture on the start
/// screen: 0, or -1 when the picture is locked (the language is stored all the
/// same). Without a language nothing happens, and that is 0.
int set_language(const char* params);

/// The battery's charge in percent, or -1 without a battery.
int battery_charge();

} // namespace qvtc::api
