// The places in a loaded document that commands work on, and the changes that they make there.
#ifndef HEARTH_TOOLS_DOCUMENT_EDIT_H
#define HEARTH_TOOLS_DOCUMENT_EDIT_H

#include <json-c/json.h>

#include "tools/document/loaded_file.h"
#include "tools/document/path.h"
#include "tools/document/places.h"

namespace hearth::tool {

// The places of a pattern as PathPattern::existingIn has them; messages begin with the document's
// name.
[[nodiscard]] std::vector<Path> placesIn(const LoadedFile& document, const std::string& name,
                                         const PathPattern& pattern);

// Throws a Failure for a path that no document can have.
void refuseDeepPath(const Path& path);

// Stores the value, to which the document takes a reference of its own, and makes what is missing
// on the way. The result is where it went: an index past the end of an array appends. Throws a
// Failure that explains why the path cannot be followed.
Path storeAt(const LoadedFile& document, const Path& path, json_object* value);

// Removes what is at the path, null included; later elements move up. Throws a Failure when nothing
// is there.
void removeAt(const LoadedFile& document, const Path& path);

// Tells the user where a value went that could not go to `path` itself.
void noteAppended(const Path& path, const Path& stored);

}  // namespace hearth::tool

#endif
