// Equality of JSON values: numbers by their value (1 is 1.0), objects in any order
// of their members, and never across types (false is not 0).
#ifndef HEARTH_SCHEMA_KEYWORDS_EQUALITY_H
#define HEARTH_SCHEMA_KEYWORDS_EQUALITY_H

#include <cstddef>

#include "schema/effort.h"

struct json_object;

namespace hearth::schema {

// False when the effort was stopped, whatever the values are.
[[nodiscard]] bool isEqual(json_object* left, json_object* right, Effort& effort);

struct EqualPair {
  bool found;
  std::size_t first, second;
};

// Finds the first element of an array that repeats an earlier one, and gives both. Takes time and
// memory in proportion to the array.
[[nodiscard]] EqualPair findEqualElements(json_object* array, Effort& effort);

}  // namespace hearth::schema

#endif
