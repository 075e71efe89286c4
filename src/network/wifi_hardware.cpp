#include "network/wifi_hardware.hpp"

#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc::network {

bool wireless_present() {
    return contains(os().capture("ip addr |grep wlan0", 2048), "wlan0") &&
           !os().exists(paths::wifi_disabled);
}

} // namespace qvtc::network
