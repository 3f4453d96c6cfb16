// Finds the value at a path.
//
// The walk starts at the root. At each token it stands in a value, which was itself found in a
// parent, and looks the token up there: a member name in an object, an index in an array. It ends
// at the last token or at the first that fails. Nothing is changed and no reference is taken.
#ifndef HEARTH_JSON_PATH_LOOKUP_H
#define HEARTH_JSON_PATH_LOOKUP_H

#include <json-c/json.h>

#include <cstddef>
#include <cstdint>

#include "json/path/tokens.h"
#include "log/library_log.h"

namespace hearth {

// Logs the line of an index token without an index; `size` is the token's length.
void logWrongIndex(const char* token, std::size_t size);

class PathLookup {
 public:
  enum class Outcome {
    kRefused,   // no root or no path: nothing was looked up
    kRoot,      // the path is empty: the root itself
    kFound,     // the value, which is null for a member holding JSON null
    kMissing,   // the last token failed
    kLostOnWay  // an earlier token failed
  };

  // Walks the path and logs each step.
  PathLookup(json_object* root, const char* path)
      : isLogged_(logs(LOG_DEBUG) || logs(LOG_INFO)), outcome_(find(root, path)) {}

  Outcome outcome() const { return outcome_; }

  // The value found; null when there is none.
  json_object* value() const { return value_; }

  // The container of the value found; after kMissing the one in which the last token was looked up.
  json_object* parent() const { return parent_; }

  // The path's last token. Requires kFound or kMissing.
  const char* lastToken() const { return tokens_.last(); }

  // The position of the value found. Requires kFound in an array.
  uint32_t index() const { return index_; }

 private:
  using Cursor = PathTokens::Cursor;

  Outcome find(json_object* root, const char* path);
  [[gnu::always_inline]] inline Outcome walk(json_object* root, const char* path);
  [[gnu::always_inline]] inline bool lookUp(Cursor token, json_object* container);
  inline void noteParent(Cursor token, json_object* parent);
  bool isLast(Cursor token) const { return *token == tokens_.last(); }

  PathTokens tokens_;
  const bool isLogged_;  // true when lines of the walk are wanted
  json_object* value_ = nullptr;
  json_object* parent_ = nullptr;
  uint32_t index_ = 0;  // of the latest index token
  Outcome outcome_;
};

}  // namespace hearth

#endif
