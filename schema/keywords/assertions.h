// The keywords that look at one value and at nothing below it.
#ifndef HEARTH_SCHEMA_KEYWORDS_ASSERTIONS_H
#define HEARTH_SCHEMA_KEYWORDS_ASSERTIONS_H

#include "schema/effort.h"
#include "schema/keywords/keywords.h"
#include "schema/pattern/pattern.h"

struct json_object;

namespace hearth {
namespace schema {

// What an assertion may use besides its arguments.
struct Workshop {
  Effort effort;
  Patterns patterns{effort};
};

// Whether the instance is of the type, or of one of the types, that the keyword `type` names.
[[nodiscard]] bool isOfTypes(json_object* instance, json_object* types, Draft draft,
                             Effort& effort);

// Whether the bound `maximum` or `minimum` of the schema is exclusive by the boolean of that name,
// as draft-04 has it.
bool isExclusive(json_object* schema, const char* name, Draft draft);

// Whether the instance satisfies the keyword, which has `value` in `schema`. Requires that the
// keyword applies to the instance and that the value's type is one of the keyword's. A value that
// cannot be used stops the effort.
[[nodiscard]] bool satisfies(json_object* instance, const Keyword& keyword, json_object* value,
                             json_object* schema, Draft draft, Workshop& workshop);

}  // namespace schema
}  // namespace hearth

#endif
