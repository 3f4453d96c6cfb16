#include "json/depth.h"

namespace hearth {
namespace {

// Most members are no containers, and not worth a call.
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
  const size_t length = json_object_array_length(array);
  for (size_t i = 0; i < length; ++i) {
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
