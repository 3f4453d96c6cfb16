// An independent copy of a value, equal to what rendering it and parsing the text again would give.
#ifndef HEARTH_JSON_DEEP_COPY_H
#define HEARTH_JSON_DEEP_COPY_H

#include "json/json_ref.h"

namespace hearth {

// Null when there is no memory, and when the value is nested deeper than the parser reads.
// Requires a value that is not null.
[[nodiscard]] JsonRef deepCopy(json_object* value);

}  // namespace hearth

#endif
