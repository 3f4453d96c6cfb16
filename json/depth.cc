// Walks down a value by recursion, with one level less to go at each container, and stops at the
// first value that stands too deep. The recursion is as deep as the limit, not as the value: a
// caller's limit bounds its stack.
#include "json/depth.h"

#include <cstddef>

namespace hearth {
namespace {

// Most values are scalars: telling them apart here saves a call for each.
inline bool isInsideDeeperThan(json_object* value, int levels) {
  return levels == 0 || (isContainer(value) && isNestedDeeperThan(value, levels - 1));
}

bool objectIsDeeperThan(json_object* object, int levels) {
  json_object_object_foreach(object, name, member) {
    (void)name;
    if (isInsideDeeperThan(member, levels)) {
      return true;
    }
  }
  return false;
}

bool arrayIsDeeperThan(json_object* array, int levels) {
  const std::size_t length = json_object_array_length(array);
  for (std::size_t i = 0; i < length; ++i) {
    if (isInsideDeeperThan(json_object_array_get_idx(array, i), levels)) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool isNestedDeeperThan(json_object* value, int levels) {
  switch (json_object_get_type(value)) {
    case json_type_object:
      return objectIsDeeperThan(value, levels);
    case json_type_array:
      return arrayIsDeeperThan(value, levels);
    default:
      return false;
  }
}

}  // namespace hearth
