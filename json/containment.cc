#include "json/containment.h"

#include <json-c/json.h>

namespace hearth {

bool containerMayContain(json_object* container, json_object* sought, int levels) {
  if (container == sought || levels == 0) {
    return true;
  }
  switch (json_object_get_type(container)) {
    case json_type_object: {
      json_object_object_foreach(container, name, member) {
        (void)name;
        if (isContainer(member) && containerMayContain(member, sought, levels - 1)) {
          return true;
        }
      }
      return false;
    }
    case json_type_array: {
      const size_t length = json_object_array_length(container);
      for (size_t i = 0; i < length; ++i) {
        json_object* const element = json_object_array_get_idx(container, i);
        if (isContainer(element) && containerMayContain(element, sought, levels - 1)) {
          return true;
        }
      }
      return false;
    }
    default:
      return false;
  }
}

}  // namespace hearth
