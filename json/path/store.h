// Storing a value at a path, making what is missing on the way.
//
// The walk stands in `current_`, which was found or made in `parent_` under the previous token. A
// token that is not the last enters a member or an element, or makes an empty object there and
// enters that. Whether the object just made should have been an array is known only at the next
// token: an index that meets an object made by this very walk (`isNew_`) replaces it by an array.
// The last token puts the value. What was made before a step that fails stays.
//
// json-c releases a tree by recursion, and a request thread's stack is small. So a path of more
// than kMostTokensToMake tokens makes nothing: it reaches only into what is there.
#ifndef HEARTH_JSON_PATH_STORE_H
#define HEARTH_JSON_PATH_STORE_H

#include <json-c/json.h>

#include <cstddef>
#include <cstdint>

#include "json/path/tokens.h"
#include "log/library_log.h"

namespace hearth {

constexpr std::size_t kMostTokensToMake = 64;

class PathStore {
 public:
  // A null value stores JSON null. A path that begins with a member name, below a root that is an
  // array, becomes a path into a new element at the array's end.
  PathStore(json_object* root, const char* path, json_object* value)
      : path_(path), value_(value), isLogged_(logs(LOG_DEBUG)), current_(root) {}

  PathStore(const PathStore&) = delete;
  PathStore& operator=(const PathStore&) = delete;

  // Walks the path and logs each step. True when the value is stored, and the tree then holds a
  // reference of its own on it; false after one LOG_ERROR line.
  [[nodiscard]] bool store();

  // After a store that succeeded: the container that holds the value, and the path's last token.
  json_object* container() const { return current_; }
  const char* lastToken() const { return tokens_.last(); }

 private:
  using Cursor = PathTokens::Cursor;

  // Checks the arguments and cuts the path. False after a LOG_ERROR line.
  bool cutPath();
  bool appendsToRoot() const;

  // One step of the walk each. False, after its LOG_ERROR line, when the walk ends there.
  [[gnu::always_inline]] inline bool step();
  inline bool enterMember();
  inline bool putMember();
  bool makeMember(json_object*& child);
  inline bool addMember(json_object* member, bool isNewName);
  [[gnu::always_inline]] inline bool indexStep();
  // Puts an empty array where the object just made stands.
  bool replaceByArray();
  bool putElement(uint32_t index);
  inline bool enterElement(uint32_t index);
  bool appendValue(uint32_t index);
  bool appendObject(uint32_t index);

  // Null without memory, and when the path is too long to make anything.
  json_object* newObject() const;
  // True when the value is or contains the current container, in which it would be stored.
  // `neighbour` is the index of the element that it would replace or follow.
  inline bool memberClosesCycle() const;
  inline bool elementClosesCycle(std::size_t neighbour) const;
  void moveTo(json_object* child);

  bool isLast() const { return token_ == last_; }
  // The token before the current one; empty at the first.
  const char* previousKey() const { return token_ == tokens_.first() ? "" : token_[-1]; }
  int position() const { return static_cast<int>(token_ - tokens_.first()); }

  const char* const path_;
  PathTokens tokens_;
  json_object* const value_;
  const bool isLogged_;  // true when lines of the walk are wanted
  Cursor token_ = nullptr;
  Cursor last_ = nullptr;
  json_object* current_;           // the value in which the walk stands
  json_object* parent_ = nullptr;  // the container of current_
  bool isNew_ = false;             // true when this walk has made current_
};

}  // namespace hearth

#endif
