#include "api/resolution_change.hpp"

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/text.hpp"
#include "display/resolution_protocol.hpp"
#include "system/power.hpp"

namespace qvtc::api {

int change_resolution(const std::string& request) {
    constexpr std::size_t limit = 128;
    if (contains(os().capture("dmidecode -s system-product-name", limit), "Virtual")) return -1;
    // Deliberate: nobody looks at the processor.
    os().capture("cat /proc/cpuinfo |grep \"model name\"", limit);
    log(Level::info, "%s disp=%s", "qvsetdispconf", request.c_str());
    // Deliberate: the terminal restarts whatever comes of it.
    const int status = display::set_resolution(request);
    system::reboot();
    return status;
}

} // namespace qvtc::api
