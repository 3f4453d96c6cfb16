// Putting a rebuilt value where the old one was.
//
// The place is found by identity: the one that the key names if the old value is there, else the
// first in the container that holds it. A key that was cut or overwritten so does no harm, and no
// neighbour is ever touched.
#ifndef HEARTH_JSON_HANDLE_RELINK_H
#define HEARTH_JSON_HANDLE_RELINK_H

struct json_object;

namespace hearth {

// True when the value is in the container. The value itself is not looked at: it may be gone.
[[nodiscard]] bool holds(json_object* container, const char* key, json_object* value);

// Replaces `old` by `made` in an object or an array, which then shares it and has released `old`:
// the caller's reference of `made` goes to the container. False, with nothing changed, when `old`
// is not in it.
[[nodiscard]] bool relink(json_object* container, const char* key, json_object* old,
                          json_object* made);

}  // namespace hearth

#endif
