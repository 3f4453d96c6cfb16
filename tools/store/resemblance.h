// Which area does a document look like? Told by the names of its outermost members, compared with
// those of the databases that are there.
#ifndef HEARTH_TOOLS_STORE_RESEMBLANCE_H
#define HEARTH_TOOLS_STORE_RESEMBLANCE_H

#include <json-c/json.h>

#include <string>

namespace hearth::tool {

// The name of the other area that the document looks like: with whose database it has more names in
// common than with this area's, and at least half of all names of both. Empty when there is none.
[[nodiscard]] std::string otherAreaLike(json_object* document, unsigned int area);

}  // namespace hearth::tool

#endif
