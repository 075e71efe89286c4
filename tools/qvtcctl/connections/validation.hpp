#pragma once

#include "qvtcctl/connections/record.hpp"

#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// Bytes an address must have: for a shorter one the library reports "parameter error!".
inline constexpr std::size_t shortest_address = 4;

/// What stops a value on its way into the settings document: too long, or a character that the
/// parameter string or the document cannot carry. A sentence on what is wrong and what to do, to
/// follow the field's name; empty when nothing is wrong.
std::string fault_in_carrying(std::string_view value);

/// What is wrong with a value by the field's own rule, for a connection of that type. As above;
/// an empty value is always right. Passwords are judged in their stored form.
std::string fault_in_value(const Field& field, const ConnectionType& type, std::string_view value);

/// How much of the rules holds.
enum class Strictness {
    whole,        ///< all of them
    carrying_only ///< only what would otherwise not be stored as it is
};

/// Refuses a value. The message names field, value (not a password's) and rule, and what to do.
void require_value(const Field& field, const ConnectionType& type, std::string_view value,
                   Strictness strictness);

/// Refuses a password, in clear text, that the field, the parameter string or the client cannot
/// take. The message names the field and never shows the password.
void require_password(const Field& field, const ConnectionType& type, std::string_view password);

/// Refuses a whole record that could be stored but that its client cannot use: no address; RDP
/// without any colour depth or codec.
void require_usable(const ConnectionType& type, const Record& record);

/// The number of seconds that a word gives. Refuses what lies outside the range.
unsigned require_seconds(const std::string& text, std::string_view what, unsigned least,
                         unsigned most);

} // namespace qvtc::qvtcctl
