// A value's text, or none.
#ifndef HEARTH_JSON_RENDER_H
#define HEARTH_JSON_RENDER_H

#include <json-c/json.h>

#include <cstddef>

namespace hearth {

// The value's text, kept by the value until it is rendered again or changed; its length goes to
// size. Null, with errno, when memory ran out: what json-c could not append, it leaves out, and a
// text with holes must not be taken for the value.
[[nodiscard]] const char* render(json_object* value, int flags, std::size_t& size);
[[nodiscard]] const char* render(json_object* value, int flags);

// Null also for a value nested deeper than kWalkNesting: json-c renders by recursion.
[[nodiscard]] const char* renderShallow(json_object* value, int flags);

}  // namespace hearth

#endif
