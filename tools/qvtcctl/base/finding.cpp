#include "qvtcctl/base/finding.hpp"

namespace qvtc::qvtcctl {

std::string_view name_of(Health health) {
    switch (health) {
    case Health::ok:
        return "ok";
    case Health::warning:
        return "warning";
    case Health::problem:
        return "problem";
    }
    return "";
}

} // namespace qvtc::qvtcctl
