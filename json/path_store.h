// Storing a value at a path, making what is missing on the way.
//
// The walk stands in `current_`, which was found or made in `parent_` under `previousKey_`. A token
// that is not the last enters a member or an element, or makes an empty object there and enters
// that. Whether the object just made should have been an array is known only at the next token: an
// index that meets an object made by this very walk (`isNew_`) replaces it by an array. The last
// token puts the value. What was made before a step that fails stays.
#ifndef HEARTH_JSON_PATH_STORE_H
#define HEARTH_JSON_PATH_STORE_H

#include <json-c/json.h>

#include <cstdint>

#include "json/path_tokens.h"

namespace hearth {

class PathStore {
 public:
  // A null value stores JSON null. A path that begins with a member name, below a root that is an
  // array, becomes a path into a new element at the array's end.
  PathStore(json_object* root, const char* path, json_object* value);

  PathStore(const PathStore&) = delete;
  PathStore& operator=(const PathStore&) = delete;

  // Walks the path and logs each step. True when the value is stored, and the tree then holds a
  // reference of its own on it; false after one LOG_ERROR line.
  [[nodiscard]] bool store();

  // After a store that succeeded: the container that holds the value, and the path's last token.
  json_object* container() const { return current_; }
  const char* lastToken() const { return tokens_.last(); }

 private:
  bool isUsable() const;

  // One step of the walk each. False, after its LOG_ERROR line, when the walk ends there.
  bool step(std::size_t position);
  bool memberStep(const char* token, bool isEnd);
  bool indexStep(std::size_t position, bool isEnd);

  bool putMember(const char* token);
  bool enterMember(const char* token);
  bool makeMember(const char* token, json_object*& child);
  bool replaceByArray();
  bool putElement(uint32_t index, const char* token);
  bool enterElement(uint32_t index, const char* token);
  bool appendValue(uint32_t index);
  bool appendObject(uint32_t index);

  bool refusesCycle(const char* token) const;
  void moveTo(json_object* child);

  const char* const path_;
  PathTokens tokens_;
  json_object* const value_;
  const bool debug_;  // whether LOG_DEBUG lines are on, asked once per walk
  std::size_t position_ = 0;
  json_object* current_;
  json_object* parent_ = nullptr;
  const char* previousKey_ = "";
  bool isNew_ = false;
};

}  // namespace hearth

#endif
