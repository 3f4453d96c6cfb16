// JSON pointers, written.
#ifndef HEARTH_SCHEMA_POINTER_H
#define HEARTH_SCHEMA_POINTER_H

#include <string>

#include "schema/effort.h"

struct json_object;

namespace hearth {
namespace schema {

// The JSON pointer to a value, found by its identity, below top; false when it is not there, or
// when the effort is stopped.
[[nodiscard]] bool locate(json_object* top, json_object* wanted, Effort& effort,
                          std::string* pointer);

// Appends one step to a JSON pointer.
void addToPointer(std::string* pointer, const char* token);

}  // namespace schema
}  // namespace hearth

#endif
