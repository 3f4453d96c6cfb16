// Checks a value against a schema file, and says which rule it breaks first.
#ifndef HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H
#define HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H

#include <string>

#include "hearth/tree_map_object.h"

namespace hearth::tool {

struct Verdict {
  bool conforms = true;
  // The first violation; all empty when the value conforms. With a platform's validator rule and
  // keyword are always empty, for it knows neither.
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

// Checks a schema against the metaschema of its own draft. A platform's validator may not know the
// metaschemas: then every schema conforms.
[[nodiscard]] Verdict checkSchema(TreeMapObject& schema);

}  // namespace hearth::tool

#endif
