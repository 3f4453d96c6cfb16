#include "json/containment.h"

#include <json-c/json.h>

#include "json/nesting.h"

namespace hearth {
namespace {

bool mayContainWithin(json_object* value, json_object* sought, int levels) {
  if (value == sought || levels == 0) {
    return true;
  }
  switch (json_object_get_type(value)) {
    case json_type_object: {
      json_object_object_foreach(value, name, member) {
        (void)name;
        if (isContainer(member) && mayContainWithin(member, sought, levels - 1)) {
          return true;
        }
      }
      return false;
    }
    case json_type_array: {
      const size_t length = json_object_array_length(value);
      for (size_t i = 0; i < length; ++i) {
        json_object* const element = json_object_array_get_idx(value, i);
        if (isContainer(element) && mayContainWithin(element, sought, levels - 1)) {
          return true;
        }
      }
      return false;
    }
    default:
      return false;
  }
}

}  // namespace

bool mayContain(json_object* value, json_object* sought) {
  return isContainer(value) && mayContainWithin(value, sought, kWalkNesting);
}

}  // namespace hearth
