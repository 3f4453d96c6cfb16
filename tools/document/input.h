// Reads files and standard input whole, and parses JSON with errors that say where they are.
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

// Reads and parses a file, or standard input for "-".
[[nodiscard]] Handle readJson(const std::string& file);

// Says where and why a save would change more of the text than it was asked to: comments, text or
// NULs behind the value, members that stand twice, integers beyond 64 bits, -0, numbers that no
// double holds, bytes that are no UTF-8. The library overlooks these when it reads. Empty for plain
// JSON.
[[nodiscard]] std::string whyNotPlainJson(const std::string& text);

}  // namespace hearth::tool

#endif
