#include "json/nesting.h"

namespace hearth {
namespace {

bool objectIsDeeperThan(json_object* object, int levels) {
  json_object_object_foreach(object, name, member) {
    (void)name;
    if (levels == 0 || isNestedDeeperThan(member, levels - 1)) {
      return true;
    }
  }
  return false;
}

bool arrayIsDeeperThan(json_object* array, int levels) {
  const size_t length = json_object_array_length(array);
  for (size_t i = 0; i < length; ++i) {
    if (levels == 0 || isNestedDeeperThan(json_object_array_get_idx(array, i), levels - 1)) {
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
