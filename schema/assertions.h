// The keywords that look at one value and at nothing below it.
#ifndef HEARTH_SCHEMA_ASSERTIONS_H
#define HEARTH_SCHEMA_ASSERTIONS_H

#include <cstddef>
#include <string_view>

#include "schema/effort.h"
#include "schema/keywords.h"
#include "schema/pattern.h"

namespace hearth {
namespace schema {

// What an assertion may use besides its arguments.
struct Workshop {
  Effort effort;
  Patterns patterns{effort};
};

// Text of a json-c string, with the NULs inside it.
std::string_view textOf(json_object* string);

// How many characters (Unicode code points) a text has.
size_t lengthOf(std::string_view text);

// Whether the instance satisfies the keyword, which has `value` in `schema`. Requires that the
// keyword applies to the instance and that the value's type is one of the keyword's. A value that
// cannot be used stops the effort.
[[nodiscard]] bool satisfies(json_object* instance, const Keyword& keyword, json_object* value,
                             json_object* schema, Draft draft, Workshop& workshop);

}  // namespace schema
}  // namespace hearth

#endif
