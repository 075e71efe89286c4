#pragma once

#include <json-c/json.h>

/// Prints JSON values on standard output, for a developer's eyes. Null is printed
/// as nothing.
namespace qvtc::store {

/// A number, a boolean or a text; anything else prints nothing. A text's name is
/// printed when there is one.
void print_scalar(json_object* value, const char* name);

/// The members of an object, in their order.
void print_members(json_object* object);

/// The elements of an array, or of the array that is that member of an object.
void print_elements(json_object* array, const char* member);

} // namespace qvtc::store
