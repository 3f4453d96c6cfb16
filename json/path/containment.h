// Tells whether a store would make a value its own descendant. Every store asks first, so that a
// tree stays a tree.
#ifndef HEARTH_JSON_PATH_CONTAINMENT_H
#define HEARTH_JSON_PATH_CONTAINMENT_H

struct json_object;

namespace hearth {

// True when `container` must not be stored in `destination`: `destination` is that very container
// or stands inside it at any depth, or there is no memory to find out. Looks at each container
// inside once, however often it is shared, and does not recurse.
// `held` is a value that `destination` holds already, or null. Storing that one again changes
// nothing about who holds whom, so it is not searched.
// Requires an object or array: a scalar holds nothing and need not be asked about.
[[nodiscard]] bool wouldCloseCycle(json_object* container, json_object* destination,
                                   json_object* held);

}  // namespace hearth

#endif
