// The places in a document that one path of the command line stands for. "[*]" is a word of this
// command alone: it stands for each element of an array, and --where picks among these.
//
//   'radios.[*].networks.[*].ssid'                    the names of all networks
//   'radios.[*].networks.[*]' --where enabled=false   the networks that are off
#ifndef HEARTH_TOOLS_DOCUMENT_PLACES_H
#define HEARTH_TOOLS_DOCUMENT_PLACES_H

#include <string>
#include <vector>

#include "tools/document/path.h"

namespace hearth::tool {

// A condition on the element that the last [*] stands for: the value at `path` in it, as `get`
// prints it, is this text.
struct Condition {
  Path path;
  std::string text;
};

class PathPattern {
 public:
  // Conditions are texts like "security.mode=open". Throws a Failure for a path or a condition that
  // is none, and for conditions on a path without [*].
  explicit PathPattern(const std::string& text, const std::vector<std::string>& conditions = {});

  // True when there is a [*].
  bool isMany() const { return parts_.size() > 1; }

  // The path itself. Requires: there is no [*].
  const Path& single() const { return parts_.front(); }

  // The path with [0] for each [*].
  Path first() const;

  // The paths that the pattern stands for, in the document's order. What the last [*] stands for is
  // there; the steps behind it may lead nowhere.
  std::vector<Path> expandedIn(json_object* root) const;

  // Those of them at which there is a value, null included. Never empty: throws a Failure that
  // explains why there is none.
  std::vector<Path> existingIn(json_object* root) const;

 private:
  bool isWanted(json_object* element) const;
  void expand(json_object* root, std::size_t part, const Path& start,
              std::vector<Path>& paths) const;
  [[noreturn]] void explainNone(json_object* root) const;

  const std::string text_;
  std::vector<Path> parts_;  // cut at each [*]
  std::vector<Condition> conditions_;
};

// A scalar as `get` prints it, and an object or array as JSON on one line.
[[nodiscard]] std::string printed(json_object* value);

}  // namespace hearth::tool

#endif
