// What differs between two documents, path by path.
//
// Members are compared by name, elements by position, after the elements that both arrays begin and
// end with: one that comes or goes in the middle is one difference, not one for each that moved.
// Numbers of different types differ.
#ifndef HEARTH_TOOLS_STORE_DIFFERENCES_H
#define HEARTH_TOOLS_STORE_DIFFERENCES_H

#include <json-c/json.h>

#include <string>
#include <vector>

#include "tools/document/input.h"
#include "tools/document/path.h"
#include "tools/terminal/output.h"

namespace hearth::tool {

struct Difference {
  enum class Kind { kChanged, kAdded, kRemoved } kind;
  Path path;         // in the new document; of what was removed, in the old one
  json_object* was;  // borrowed from the documents; null for JSON null too
  json_object* is;
};

// In the order of the old document; what was added comes behind what is in both.
[[nodiscard]] std::vector<Difference> differencesOf(json_object* was, json_object* is);

// "~ radios.[0].channel: 6 -> 11", "+ path: value", "- path: value"; with an area, its name in
// front of the path. Secrets are never shown, only that they differ.
[[nodiscard]] std::string lineOf(const Difference& difference, const std::string& area,
                                 const Output& out);

// The same as a JSON object with the members area, change, path, pointer, was and is.
[[nodiscard]] Handle objectOf(const Difference& difference, const std::string& area);

}  // namespace hearth::tool

#endif
