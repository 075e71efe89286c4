#include "system/power.hpp"

#include "core/log.hpp"
#include "core/os.hpp"

namespace qvtc::system {

void reboot() {
    os().run("systemctl --force reboot > /dev/null 2>&1");
    log(Level::info, "%s", "thinclient reboot");
}

void shut_down() {
    os().run("shutdown now > /dev/null 2>&1");
    log(Level::info, "%s", "thinclient shutdown");
}

} // namespace qvtc::system
