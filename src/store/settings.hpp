#pragma once

#include <string>

namespace qvtc::store {

/// A device setting's value; empty when there is none.
std::string setting(const char* key);

/// Stores a device setting; false when the document cannot take it.
bool store_setting(const char* key, const std::string& value);

} // namespace qvtc::store
