#pragma once

#include "qvtcctl/connections/record.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// A field by its place in the table, and what is to stand in it.
struct Assignment {
    std::size_t field;
    std::string value;
};

/// Reads words of the form FIELD=VALUE; VALUE may hold further "=". Refuses unknown fields,
/// fields named twice, id and type, and passwords: a command line can be read by everybody on
/// the machine. An empty password is allowed, it removes a stored one.
std::vector<Assignment> parse_assignments(const std::vector<std::string>& words);

/// Puts the values into the record after refusing those that break a rule.
void apply(const std::vector<Assignment>& assignments, const ConnectionType& type, Record& record);

/// Refuses a stored value that a change of the record would lose, because it cannot be carried.
void require_carried(const Record& record);

} // namespace qvtc::qvtcctl
