// Files and standard input as they come in: read whole, and parsed with an error that says where.
#ifndef HEARTH_TOOLS_DOCUMENT_INPUT_H
#define HEARTH_TOOLS_DOCUMENT_INPUT_H

#include <memory>
#include <string>

#include "hearth/tree_map_object.h"

namespace hearth::tool {

using Handle = std::unique_ptr<TreeMapObject>;

// The contents of a regular file, or of standard input for "-". Throws a Failure with the name.
[[nodiscard]] std::string readWhole(const std::string& file);

// The value of a JSON text, read as the library reads it; the handle has no value for "null".
// Throws a Failure with the name and the place of the error.
[[nodiscard]] Handle parse(const std::string& text, const std::string& name,
                           bool mayBeNull = false);

// Both.
[[nodiscard]] Handle readJson(const std::string& file);

// What the library overlooks when it reads the text, and would drop when it saves: comments, text
// behind the value, bytes that are no UTF-8 and the like, in a few words. Empty for plain JSON.
[[nodiscard]] std::string looseness(const std::string& text);

}  // namespace hearth::tool

#endif
