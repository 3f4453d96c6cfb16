// An independent copy of a value, equal to what rendering it and parsing the text again would give.
#ifndef HEARTH_JSON_DOCUMENT_DEEP_COPY_H
#define HEARTH_JSON_DOCUMENT_DEEP_COPY_H

#include "base/json_ref.h"

namespace hearth {

struct DeepCopy {
  JsonRef
      value;     // null without memory, and when the text does not parse: it may be nested too deep
  bool hasText;  // false when the value renders as no text at all
};

// Requires a value that is not null.
[[nodiscard]] DeepCopy deepCopy(json_object* value);

}  // namespace hearth

#endif
