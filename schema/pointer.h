// JSON pointers, written.
#ifndef HEARTH_SCHEMA_POINTER_H
#define HEARTH_SCHEMA_POINTER_H

#include <cstdint>
#include <string>

struct json_object;

namespace hearth {
namespace schema {

// The JSON pointer to a value, found by its identity, below top; false when it is not there.
[[nodiscard]] bool locate(json_object* top, json_object* wanted, std::string* pointer);

// A number in digits, as it stands in a pointer or a sentence.
std::string decimal(uint64_t number);

// Appends one step to a JSON pointer.
void addToPointer(std::string* pointer, const char* token);

}  // namespace schema
}  // namespace hearth

#endif
