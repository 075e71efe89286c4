#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/connections/record.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

enum class Passwords {
    hidden,   ///< "(set)"
    readable, ///< the password itself
    stored    ///< the stored form, as export and import have it
};

/// What is shown for a field; empty for an empty field.
std::string shown_value(const Record& record, std::size_t field, Passwords passwords);

/// One line a connection; there is at least one.
std::string list_text(const std::vector<Record>& records, Passwords passwords);

/// Field, value and meaning: of the fields that hold something, or of all.
std::string record_text(const Record& record, Passwords passwords, bool all_fields);

/// {"id": 33, "type": "rdp", ...}: the id a number, the type its name, all other fields texts.
Json record_json(const Record& record, Passwords passwords, bool all_fields);

/// {"connections": [...]}
Json list_json(const std::vector<Record>& records, Passwords passwords);

} // namespace qvtc::qvtcctl
