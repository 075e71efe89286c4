#pragma once

#include <optional>
#include <string>

#include "connections/types.hpp"
#include "core/json.hpp"

/// The operations on the list of stored connections.
namespace qvtc::connections {

/// The type of that number; nothing, and a line on standard output, for a
/// number that is no type.
std::optional<Type> known_type(std::uint32_t number);

/// The lowest free id of a type's block; nothing, and a line in the log, when
/// all are in use. Prints what it has looked at on standard output.
std::optional<ConnectionId> free_id(std::uint32_t type);

/// Adds the record that a parameter string describes, or replaces the one whose
/// "id" it gives. False, and an error in the log, when nothing was stored.
bool store_connection(std::uint32_t type, const std::string& params);

/// One record as an object of its 51 fields, by its absolute id; an empty object
/// when there is none. Null when a value breaks the text of the object, which is
/// composed without escaping.
Json connection(std::uint32_t type, ConnectionId id);

/// {"list": [record, ...]} of a type, ascending by id.
Json connections_of(std::uint32_t type);

/// Deletes the record in a slot of a type; false for a number that is no type.
bool delete_connection(std::uint32_t type, std::uint32_t slot);

/// {"delay": text}, or null when no delay is set.
Json connect_delay();

/// Stores the value of a "name=value" pair as the delay; nothing without one.
void store_connect_delay(const std::string& params);

} // namespace qvtc::connections
