// JSON pointers as text (RFC 6901): writing them, and finding the one of a value.
#ifndef HEARTH_SCHEMA_RESOURCE_POINTER_H
#define HEARTH_SCHEMA_RESOURCE_POINTER_H

#include <string>

#include "schema/effort.h"

struct json_object;

namespace hearth::schema {

// Appends the pointer from `top` to a value below it, found by its identity. False when the value
// is not there, or when the effort is stopped.
[[nodiscard]] bool locate(json_object* top, json_object* wanted, Effort& effort,
                          std::string& pointer);

// Appends one step, a member's name or an element's index.
void addToPointer(const char* step, std::string& pointer);

}  // namespace hearth::schema

#endif
