// Renders values as text. A text with holes is never given out.
#ifndef HEARTH_JSON_RENDER_H
#define HEARTH_JSON_RENDER_H

#include <json-c/json.h>

#include <cstddef>

namespace hearth {

// Answers the value's text, which the value keeps until it is rendered again or changed, and its
// length in size. Null, with errno, when memory ran out: json-c leaves out what it could not
// append, and a text with holes must not be taken for the value.
[[nodiscard]] const char* render(json_object* value, int flags, std::size_t& size);
[[nodiscard]] const char* render(json_object* value, int flags);

// The same, and null also for a value nested deeper than kWalkNesting: json-c renders by recursion.
[[nodiscard]] const char* renderShallow(json_object* value, int flags);

}  // namespace hearth

#endif
