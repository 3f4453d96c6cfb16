// Whether one value stands inside another: what a store asks so that the tree stays a tree.
#ifndef HEARTH_JSON_CONTAINMENT_H
#define HEARTH_JSON_CONTAINMENT_H

#include "json/nesting.h"

namespace hearth {

// mayContain of a container, walked down so many levels and no deeper.
[[nodiscard]] bool containerMayContain(json_object* container, json_object* sought, int levels);

// True when `sought` is `value` itself or stands somewhere inside it, and also when `value` is
// nested too deep to be sure. Costs nothing for a scalar.
[[nodiscard]] inline bool mayContain(json_object* value, json_object* sought) {
  return isContainer(value) && containerMayContain(value, sought, kWalkNesting);
}

}  // namespace hearth

#endif
