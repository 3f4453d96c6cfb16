// Checks a value against a schema file, and says which rules it breaks.
#ifndef HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H
#define HEARTH_TOOLS_DOCUMENT_SCHEMA_CHECK_H

#include <string>
#include <vector>

#include "hearth/kit/result.h"
#include "hearth/tree_map_object.h"

namespace hearth::tool {

// A rule that a value breaks. Secrets are quoted nowhere in it. With a platform's validator rule
// and keyword are always empty, for it knows neither.
struct Breach {
  BrokenRule rule;
  std::string path;                  // of the value at fault; a JSON pointer where no path leads
  std::string where;                 // the same in messages
  std::vector<std::string> choices;  // of an enumeration: all of them, as JSON

  // "at 'a.b': must be ... (rule /properties/...)"; with a list of all choices if they are wanted.
  [[nodiscard]] std::string text(bool withChoices) const;
};

struct Verdict {
  bool conforms = true;
  std::vector<Breach> breaches;  // empty when the value conforms, or nothing more is known

  // "does not conform: at 'a.b': must be ...", with the first breach, for an error line.
  [[nodiscard]] std::string text() const;
  // The breaches as a Failure takes them.
  [[nodiscard]] std::vector<BrokenRule> broken() const;
};

// How many breaches are looked for.
constexpr unsigned int kFirstBreach = 1;
constexpr unsigned int kAllBreaches = 10'000;  // more are no help

// Throws a Failure when the schema file cannot be read or parsed.
[[nodiscard]] Verdict checkAgainst(TreeMapObject& document, const std::string& schemaFile,
                                   unsigned int limit = kFirstBreach);

// Checks a schema against the metaschema of its own draft. A platform's validator may not know the
// metaschemas: then every schema conforms.
[[nodiscard]] Verdict checkSchema(TreeMapObject& schema);

}  // namespace hearth::tool

#endif
