// Makes an independent copy of a value: what rendering it and parsing the text again would give.
#ifndef HEARTH_JSON_DOCUMENT_DEEP_COPY_H
#define HEARTH_JSON_DOCUMENT_DEEP_COPY_H

#include "base/json_ref.h"

namespace hearth {

struct DeepCopy {
  // Null without memory, and when the text does not parse: it may be nested too deep.
  JsonRef value;
  bool hasText;  // false when the value renders as no text at all
};

// Requires a value that is not null.
[[nodiscard]] DeepCopy deepCopy(json_object* value);

}  // namespace hearth

#endif
