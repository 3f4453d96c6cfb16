// Paths as the command line gives them. The path language is the library's; this file checks a path
// before the library sees it, and explains why one leads nowhere.
#ifndef HEARTH_TOOLS_DOCUMENT_PATH_H
#define HEARTH_TOOLS_DOCUMENT_PATH_H

#include <json-c/json.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace hearth::tool {

// One step of a path: a member name or an index.
struct Step {
  explicit Step(std::string memberName) : name(std::move(memberName)) {}
  explicit Step(std::size_t position)
      : name("[" + std::to_string(position) + "]"), index(position), isIndex(true) {}

  std::string name;  // as written in a path
  std::size_t index = 0;
  bool isIndex = false;
};

class Path {
 public:
  Path() = default;
  // Throws a Failure for text that the library would read in a surprising way: an index that is not
  // "[" digits "]", or bytes that are no UTF-8.
  explicit Path(const std::string& text);

  std::vector<Step> steps;

  bool isRoot() const { return steps.empty(); }
  Path operator/(Step step) const;
  // The first `count` steps only; there must be as many.
  Path head(std::size_t count) const;
  // The path as the library takes it.
  std::string text() const;
  // The path in a message: quoted, "the document" for the root.
  std::string shown() const;
  // False when the library could not be told this path: a member name holds a dot or begins with a
  // bracket.
  bool isAddressable() const;
  // The same way as a JSON pointer, which can name every member.
  std::string pointer() const;
  // The path where one leads there, else the pointer.
  std::string textOrPointer() const { return isAddressable() ? text() : pointer(); }
};

// The value at the end of a path, and what holds it.
struct PathEnd {
  json_object* container;  // null for the root
  json_object* value;      // null for JSON null too
};

// Follows a path from the root. True when something is there, JSON null included.
[[nodiscard]] bool find(json_object* root, const Path& path, PathEnd& end);

// Throws a Failure that says which step of a path fails, and why. For paths at whose end nothing is
// found, and for those that a store could not follow.
[[noreturn]] void explainMissing(json_object* root, const Path& path);

// The path of the value to which a JSON pointer leads.
[[nodiscard]] Path pathOfPointer(json_object* root, const std::string& pointer);

// The value itself; null when nothing is there.
[[nodiscard]] json_object* valueAtPointer(json_object* root, const std::string& pointer);

// Calls visit for each value with its path: the root first, then depth first in the document's
// order.
using Visit = std::function<void(const Path&, json_object*)>;
void walk(json_object* root, const Visit& visit);

}  // namespace hearth::tool

#endif
