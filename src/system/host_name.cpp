#include "system/host_name.hpp"

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::system {

std::string host_name() {
    constexpr std::size_t longest = host_name_size - 1;
    if (std::string chosen = cut(store::setting(store::keys::host_name), longest); !chosen.empty())
        return chosen;
    const std::string identity = store::setting(store::keys::device_identity);
    if (identity.empty()) return nameless_host;
    return cut(textf("TC%s", identity.c_str()), longest);
}

void set_host_name(const std::string& name) {
    if (name.empty()) return;
    if (shell::is_echo_option(name)) {
        log(Level::error, "@set_tc_hostname not a host name: %s", name.c_str());
        return;
    }
    store::store_setting(store::keys::host_name, name);
    os().run(textf("echo \"%s\" > /etc/hostname", shell::in_double(name).c_str()));
}

} // namespace qvtc::system
