#pragma once

#include "connections/record.hpp"

#include <string>
#include <utility>
#include <vector>

namespace qvtc::clients {

using connections::Field;

using FieldValues = std::vector<std::pair<Field, std::string>>;

/// A record of these values; the other fields are empty.
inline connections::Record record_of(const FieldValues& values) {
    connections::Record record;
    for (const auto& [field, value] : values) record[field] = value;
    return record;
}

} // namespace qvtc::clients
