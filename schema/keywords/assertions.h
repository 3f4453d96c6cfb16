// The keywords that look at one value and at nothing below it.
#ifndef HEARTH_SCHEMA_KEYWORDS_ASSERTIONS_H
#define HEARTH_SCHEMA_KEYWORDS_ASSERTIONS_H

#include "schema/effort.h"
#include "schema/keywords/keywords.h"
#include "schema/pattern/pattern.h"

struct json_object;

namespace hearth::schema {

// What assertions work with besides their arguments, one for a whole validation.
struct Workshop {
  Effort effort;
  Patterns patterns{effort};
};

// True when the instance is of the type, or of one of the types, that the keyword `type` names. A
// name of no type stops the effort.
[[nodiscard]] bool isOfTypes(json_object* instance, json_object* types, Draft draft,
                             Effort& effort);

// Draft-04 makes the bound `maximum` or `minimum` of a schema exclusive by a boolean beside it, of
// this name. False in later drafts, where the name is a bound of its own.
[[nodiscard]] bool isExclusive(json_object* schema, const char* name, Draft draft);

// True when the instance satisfies the keyword, which has `value` in `schema`. Requires that the
// keyword applies to the instance and that the value's type is one of the keyword's. A value that
// cannot be used stops the effort. A keyword that asserts nothing by itself is satisfied.
[[nodiscard]] bool satisfies(json_object* instance, const Keyword& keyword, json_object* value,
                             json_object* schema, Draft draft, Workshop& workshop);

}  // namespace hearth::schema

#endif
