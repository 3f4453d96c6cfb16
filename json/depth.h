// Tells how deep a value is nested. The question itself is safe for a value of any depth.
#ifndef HEARTH_JSON_DEPTH_H
#define HEARTH_JSON_DEPTH_H

#include <json-c/json.h>

namespace hearth {

// json-c's parser reads 32 levels, the innermost value counted: a value that it reads stands in at
// most this many containers.
constexpr int kParserNesting = 31;

// Rendering, which json-c does by recursion, goes this deep and no deeper: documents made in memory
// may be nested at will, and a request thread's stack is small.
constexpr int kWalkNesting = 256;

inline bool isContainerType(json_type type) {
  return type == json_type_object || type == json_type_array;
}

inline bool isContainer(json_object* value) {
  return isContainerType(json_object_get_type(value));
}

// True when some value inside stands in more than `levels` containers. Recurses `levels` deep at
// most.
[[nodiscard]] bool isNestedDeeperThan(json_object* value, int levels);

}  // namespace hearth

#endif
