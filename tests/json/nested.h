// Values of any depth, made without a parser and released without recursion.
#ifndef HEARTH_TESTS_JSON_NESTED_H
#define HEARTH_TESTS_JSON_NESTED_H

#include <algorithm>
#include <utility>
#include <vector>

#include "base/json_ref.h"

// Makes objects and arrays in turn, each in the one before it, and {"k":1} as the innermost. The
// result holds a reference on each and releases the outermost first, so no release recurses.
inline std::vector<hearth::JsonRef> nested(int levels) {
  std::vector<hearth::JsonRef> containers;
  json_object* inside = json_object_new_int(1);
  for (int i = 0; i < levels; ++i) {
    const bool isArray = i % 2 != 0;
    hearth::JsonRef outer(isArray ? json_object_new_array() : json_object_new_object());
    if (isArray) {
      json_object_array_add(outer.get(), inside);
    } else {
      json_object_object_add(outer.get(), "k", inside);
    }
    inside = json_object_get(outer.get());
    containers.push_back(std::move(outer));
  }
  json_object_put(inside);
  std::reverse(containers.begin(), containers.end());
  return containers;
}

#endif
