// Paths on the command line. They are the library's; this file checks them before the library sees
// them, and explains why one leads nowhere.
#ifndef HEARTH_TOOLS_DOCUMENT_PATH_H
#define HEARTH_TOOLS_DOCUMENT_PATH_H

#include <json-c/json.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace hearth::tool {

// A member name or an index.
struct Token {
  explicit Token(std::string memberName) : name(std::move(memberName)) {}
  explicit Token(std::size_t position)
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

  std::vector<Token> tokens;

  bool isRoot() const { return tokens.empty(); }
  Path operator/(Token token) const;
  // The first tokens only.
  Path head(std::size_t count) const;
  // As the library takes it.
  std::string text() const;
  // As a person takes it: quoted, "the document" for the root.
  std::string shown() const;
  // False when no path leads there: a member name holds a dot or begins with a bracket.
  bool isAddressable() const;
  // As a JSON pointer, which can name every member.
  std::string pointer() const;
  // The path where one leads there, else the pointer.
  std::string textOrPointer() const { return isAddressable() ? text() : pointer(); }
};

// Where a path leads.
struct Place {
  json_object* container;  // null for the root
  json_object* value;      // null for JSON null too
};

// True when something is at the path, JSON null included.
[[nodiscard]] bool find(json_object* root, const Path& path, Place& place);

// Throws a Failure that says which step of the path fails, and why.
[[nodiscard]] Place locate(json_object* root, const Path& path);
[[noreturn]] void explainMissing(json_object* root, const Path& path);

// The path of the value to which a JSON pointer leads.
[[nodiscard]] Path pathOfPointer(json_object* root, const std::string& pointer);

// Calls visit for each value of the document, in its order.
using Visit = std::function<void(const Path&, json_object*)>;
void walk(json_object* root, const Visit& visit);

}  // namespace hearth::tool

#endif
