// Makes handles without throwing, and holds the small things that all files about handles share.
#ifndef HEARTH_JSON_HANDLE_HANDLE_H
#define HEARTH_JSON_HANDLE_HANDLE_H

#include "hearth/tree_map_object.h"

namespace hearth {

// A new handle that takes over a reference. Without memory the reference is released and the result
// is null.
[[nodiscard]] TreeMapObject* newOwningHandle(json_object* adopted);

// A new handle on a value inside a container; null without memory.
[[nodiscard]] TreeMapObject* newBorrowedHandle(json_object* value, json_object* container,
                                               const char* key);

// A text that "%s" of a log line can take.
inline const char* printable(const char* text) {
  return text != nullptr ? text : "(null)";
}

}  // namespace hearth

#endif
