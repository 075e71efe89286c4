#include "qvtcctl/connections/record.hpp"

#include "qvtcctl/base/text.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {

void Record::set_identity(std::optional<unsigned> id, const ConnectionType& type) {
    values_[field_index("id")] = id ? std::to_string(*id) : "";
    values_[field_index("type")] = std::to_string(type.number);
}

std::string to_parameters(const Record& record) {
    std::string parameters;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        std::string value = record[i];
        std::replace(value.begin(), value.end(), '&', '%');
        if (!parameters.empty()) parameters += '&';
        parameters += fmt::format("{}={}", fields[i].name, value);
    }
    return parameters;
}

std::string label_of(unsigned id, const Record& record) {
    if (record.name().empty()) return std::to_string(id);
    return fmt::format("{} ({})", id, printable(record.name()));
}

} // namespace qvtc::qvtcctl
