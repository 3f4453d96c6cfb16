// Whether one value stands inside another: what a store asks so that the tree stays a tree.
#ifndef HEARTH_JSON_CONTAINMENT_H
#define HEARTH_JSON_CONTAINMENT_H

struct json_object;

namespace hearth {

// True when `sought` is `value` itself or stands somewhere inside it, and also when `value` is
// nested too deep to be sure. Costs nothing for a scalar.
[[nodiscard]] bool mayContain(json_object* value, json_object* sought);

}  // namespace hearth

#endif
