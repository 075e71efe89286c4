#include "store/settings.hpp"

#include "store/document.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::store {

std::string setting(const char* key) {
    return Document::load().get(keys::device_item, key).value_or("");
}

bool store_setting(const char* key, const std::string& value) {
    bool stored = false;
    const bool locked = change_document(
        [&](Document& document) { return stored = document.set(keys::device_item, key, value); });
    return locked && stored;
}

} // namespace qvtc::store
