// The questions behind keywords that lead to other schemas, a file for each group of them. Each
// asks about the frame's instance and the waiting keywords of the frame's schema, and comes back to
// the walker for the schemas below. With marks, what was looked at is marked.
#ifndef HEARTH_SCHEMA_WALK_QUESTIONS_H
#define HEARTH_SCHEMA_WALK_QUESTIONS_H

#include "schema/walk/walker.h"

namespace hearth::schema {

// references.cc: $ref, and $recursiveRef or $dynamicRef.
[[nodiscard]] bool conformsToReference(Walker& walker, const Frame& frame, json_object* reference,
                                       Marks* marks);
[[nodiscard]] bool conformsToDynamicReference(Walker& walker, const Frame& frame,
                                              json_object* reference, Marks* marks);

// combinations.cc: allOf, anyOf, oneOf, not, if with then and else.
[[nodiscard]] bool conformsToCombinations(Walker& walker, const Frame& frame,
                                          const Pending& pending, Marks* marks);

// objects.cc. Requires that the instance is an object.
[[nodiscard]] bool conformsAsObject(Walker& walker, const Frame& frame, const Pending& pending,
                                    Marks* marks);
// The members without a mark conform to the schema of unevaluatedProperties.
[[nodiscard]] bool unmarkedMembersConform(Walker& walker, const Frame& frame, json_object* schema,
                                          const Marks& marks);

// arrays.cc. Requires that the instance is an array.
[[nodiscard]] bool conformsAsArray(Walker& walker, const Frame& frame, const Pending& pending,
                                   Marks* marks);
// The elements without a mark conform to the schema of unevaluatedItems.
[[nodiscard]] bool unmarkedElementsConform(Walker& walker, const Frame& frame, json_object* schema,
                                           const Marks& marks);

}  // namespace hearth::schema

#endif
