#include "core/local_time.hpp"

namespace qvtc {

std::tm local_now() {
    // localtime_r alone would keep the zone that the process started with, and
    // it is this process that changes the terminal's zone.
    tzset();
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

} // namespace qvtc
