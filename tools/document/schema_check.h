// Whether a value conforms to a schema file, and which rule it breaks first if not.
#ifndef HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H
#define HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H

#include <string>

#include "hearth/tree_map_object.h"

namespace hearth::tool {

struct Verdict {
  bool conforms = true;
  // Of the first violation; empty when it conforms. A platform's validator knows no rule.
  std::string where;    // path of the value at fault, "the document" for all of it
  std::string pointer;  // the same as a JSON pointer
  std::string rule;     // JSON pointer into the schema
  std::string keyword;
  std::string message;

  // "does not conform: at 'a.b': must be ... (rule /properties/...)", for an error line.
  [[nodiscard]] std::string text() const;
};

// Throws a Failure when the schema file cannot be read or parsed.
[[nodiscard]] Verdict checkAgainst(TreeMapObject& document, const std::string& schemaFile);

// Whether a schema is one by the rules of its own draft. A platform's validator may not know those:
// then every schema is.
[[nodiscard]] Verdict checkSchema(TreeMapObject& schema);

}  // namespace hearth::tool

#endif
