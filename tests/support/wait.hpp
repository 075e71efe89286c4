#pragma once

#include <chrono>
#include <thread>

namespace qvtc::test {

/// Asks `condition` until it is true, and says whether it became so within `limit`. Waits only
/// as long as needed, so be generous: a slow machine is no failure.
template <typename Condition>
[[nodiscard]] bool wait_until(Condition condition,
                              std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace qvtc::test
