// Puts a rebuilt value where the old one was.
//
// The position is found by identity: it is the one that the key names if the old value stands
// there, else the first in the container at which it stands. So a key that was cut or overwritten
// does no harm, and no neighbour is ever touched.
#ifndef HEARTH_JSON_HANDLE_RELINK_H
#define HEARTH_JSON_HANDLE_RELINK_H

struct json_object;

namespace hearth {

// True when the value is a member or element of the container. Only its address is compared: it may
// be freed.
[[nodiscard]] bool contains(json_object* container, const char* key, json_object* value);

// Replaces `old` by `made` in an object or an array. The container takes over one reference on
// `made` and releases its own on `old`. False, with nothing changed, when `old` is not in it.
[[nodiscard]] bool relink(json_object* container, const char* key, json_object* old,
                          json_object* made);

}  // namespace hearth

#endif
