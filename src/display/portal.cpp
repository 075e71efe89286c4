#include "display/portal.hpp"

#include "core/params.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

Json user_portal() {
    const bool off = contains(store::setting(store::keys::user_portal), "off");
    return json_pair("useUserportal", off ? "off" : "on");
}

void set_user_portal(const std::string& params) {
    const std::string value = single_pair_value(params);
    if (!value.empty()) store::store_setting(store::keys::user_portal, value);
}

} // namespace qvtc::display
