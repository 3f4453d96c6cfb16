// Whether one value stands inside another: what a store asks so that the tree stays a tree.
#ifndef HEARTH_JSON_CONTAINMENT_H
#define HEARTH_JSON_CONTAINMENT_H

#include "json/nesting.h"

namespace hearth {

// mayContain of a container.
[[nodiscard]] bool containerMayContain(json_object* container, json_object* sought);

// True when `sought` is `value` itself or stands somewhere inside it, and also when `value` is
// nested too deep, or shared within itself too often, to be sure. Costs nothing for a scalar.
[[nodiscard]] inline bool mayContain(json_object* value, json_object* sought) {
  return isContainer(value) && containerMayContain(value, sought);
}

}  // namespace hearth

#endif
