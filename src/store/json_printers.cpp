#include "store/json_printers.hpp"

#include <cstdio>

namespace qvtc::store {

namespace {

void print_text(json_object* value, const char* name) {
    std::printf("json_type_string");
    if (name != nullptr) std::printf("          name: %s\n", name);
    std::printf("          value: %s\n", json_object_get_string(value));
}

void print_element(json_object* element) {
    switch (json_object_get_type(element)) {
    case json_type_array:
        print_elements(element, nullptr);
        break;
    case json_type_object:
        print_members(element);
        break;
    default:
        print_scalar(element, nullptr);
    }
}

} // namespace

// Deliberate: the name of a type ends no line, and only a boolean's value is not indented.
void print_scalar(json_object* value, const char* name) {
    switch (json_object_get_type(value)) {
    case json_type_double:
        std::printf("json_type_double");
        std::printf("          value: %lf\n", json_object_get_double(value));
        break;
    case json_type_boolean:
        std::printf("json_type_boolean");
        std::printf("value: %s\n", json_object_get_boolean(value) != 0 ? "true" : "false");
        break;
    case json_type_int:
        std::printf("json_type_int");
        std::printf("          value: %d\n", json_object_get_int(value));
        break;
    case json_type_string:
        print_text(value, name);
        break;
    default:
        break;
    }
}

void print_members(json_object* object) {
    if (!json_object_is_type(object, json_type_object)) return;
    json_object_object_foreach(object, name, value) {
        switch (json_object_get_type(value)) {
        case json_type_object:
            std::printf("json_type_object");
            print_members(value);
            break;
        case json_type_array:
            std::printf("type: json_type_array, ");
            print_elements(object, name);
            break;
        default:
            print_scalar(value, name);
        }
    }
}

void print_elements(json_object* array, const char* member) {
    if (member != nullptr) {
        if (!json_object_is_type(array, json_type_object)) return;
        array = json_object_object_get(array, member);
    }
    if (!json_object_is_type(array, json_type_array)) return;
    for (std::size_t i = 0; i < json_object_array_length(array); ++i) {
        print_element(json_object_array_get_idx(array, i));
    }
}

} // namespace qvtc::store
