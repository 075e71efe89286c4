#include "clients/start_marker.hpp"

#include "core/os.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::clients {

std::string store_start_marker() {
    std::string marker = textf("[%lld]start to connect...", static_cast<long long>(os().now()));
    store::store_setting(store::keys::start_marker, marker);
    return marker;
}

} // namespace qvtc::clients
