#include "system/manager_password.hpp"

#include "core/params.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::system {

Json manager_password() {
    constexpr std::size_t longest = 255;
    return json_pair("password", cut(store::setting(store::keys::manager_password), longest));
}

void set_manager_password(const char* params) {
    ParamTable table;
    table.parse(params);
    const char* password = table.find("password");
    store::store_setting(store::keys::manager_password, password == nullptr ? "" : password);
}

} // namespace qvtc::system
