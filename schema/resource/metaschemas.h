// The drafts' own metaschemas, built in: nothing is ever fetched.
#ifndef HEARTH_SCHEMA_RESOURCE_METASCHEMAS_H
#define HEARTH_SCHEMA_RESOURCE_METASCHEMAS_H

#include <string_view>

#include "schema/keywords/keywords.h"

namespace hearth::schema {

// Gives the draft whose metaschema, or a part of it, has this URI, with or without an empty
// fragment. False when it is none of them.
[[nodiscard]] bool isMetaschema(std::string_view uri, Draft& draft);

// The metaschema of a draft with all its parts embedded, as a value that the caller owns; null when
// memory runs out.
[[nodiscard]] json_object* makeMetaschema(Draft draft);

}  // namespace hearth::schema

#endif
