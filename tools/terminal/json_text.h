// JSON as people and programs read it: indented, in colour where there is any, and harmless on a
// terminal without being another document.
#ifndef HEARTH_TOOLS_TERMINAL_JSON_TEXT_H
#define HEARTH_TOOLS_TERMINAL_JSON_TEXT_H

#include <json-c/json.h>

#include <string>

#include "tools/terminal/output.h"

namespace hearth::tool {

enum class Layout { kIndented, kOneLine };

// The value as JSON, coloured where `out` has colours, without a line feed at the end. Requires a
// value nested no deeper than the parser reads.
[[nodiscard]] std::string jsonText(json_object* value, const Output& out,
                                   Layout layout = Layout::kIndented);

// A word for the value's type, with its article: "an object", "a string", "null".
[[nodiscard]] const char* typeName(json_object* value);

// The type with its extent: "an array of 2 elements".
[[nodiscard]] std::string described(json_object* value);

}  // namespace hearth::tool

#endif
