#pragma once

#include <string>
#include <vector>

namespace qvtc::bench {

/// A ratio of two benchmarks of the same run, and its limit.
struct Goal {
    std::string what;
    std::string measured;
    std::string yardstick;
    double at_most; ///< of measured / yardstick; 0 for one that is only printed
};

const std::vector<Goal>& settings_goals();
const std::vector<Goal>& capture_goals();
const std::vector<Goal>& network_goals();

} // namespace qvtc::bench
