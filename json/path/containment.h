// Whether a store would make a value its own descendant: asked before every store, so that a tree
// stays a tree.
#ifndef HEARTH_JSON_PATH_CONTAINMENT_H
#define HEARTH_JSON_PATH_CONTAINMENT_H

struct json_object;

namespace hearth {

// True when `container` must not be stored in `place`: `place` is it, or stands inside it at any
// depth, or there is no memory to find out. Looks at each container inside once, however often it
// is shared, and does not recurse.
// `held` is a value that `place` holds already, or null. Storing that one again changes nothing
// about who holds whom, so it is not searched.
// Requires an object or array: a scalar holds nothing and need not be asked about.
[[nodiscard]] bool wouldCloseCycle(json_object* container, json_object* place, json_object* held);

}  // namespace hearth

#endif
