#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

enum class Health { ok, warning, problem };
std::string_view name_of(Health health);

/// One thing that was looked at.
struct Finding {
    Health health = Health::ok;
    std::string_view check; ///< what was looked at, in a word or two
    std::string text;       ///< a sentence
    std::string advice;     ///< what to do; empty where nothing is to be done

    bool operator==(const Finding&) const = default;
};

using Findings = std::vector<Finding>;

} // namespace qvtc::qvtcctl
