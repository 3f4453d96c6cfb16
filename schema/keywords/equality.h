// When two JSON values are the same value: numbers by their value (1 is 1.0), objects in any order
// of their members, and never across types (false is not 0).
#ifndef HEARTH_SCHEMA_KEYWORDS_EQUALITY_H
#define HEARTH_SCHEMA_KEYWORDS_EQUALITY_H

#include <cstddef>

#include "schema/effort.h"

struct json_object;

namespace hearth {
namespace schema {

// False too when the effort was stopped.
[[nodiscard]] bool isEqual(json_object* left, json_object* right, Effort& effort);

struct EqualPair {
  bool found;
  size_t first, second;
};

// Two equal elements of an array, the second one being the first that repeats an earlier one. Takes
// time and memory in proportion to the array.
[[nodiscard]] EqualPair findEqualElements(json_object* array, Effort& effort);

}  // namespace schema
}  // namespace hearth

#endif
