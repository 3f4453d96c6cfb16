// The walk that reads. A member name is looked up by json-c, which answers "not there" for a value
// of another kind; an index is checked here, step by step, because each way to fail has its line.
//
// JSON null is a null pointer in json-c. A member that holds it is found, with a null value. An
// element that holds it counts as not found and has a line of its own.
#include "json/path/lookup.h"

#include "base/address.h"
#include "json/path/index.h"
#include "json/path/walk_log.h"

namespace hearth {
namespace {

constexpr char kOperation[] = "getJObj";

// Answers the element at an index token. Logs the reason and answers null when there is none; a
// number past the end is logged as an int, so the largest appears as -1.
json_object* findElement(json_object* array, const char* token, std::size_t size, uint32_t& index) {
  if (!indexOfToken(token, size, index)) {
    logWrongIndex(token, size);
    return nullptr;
  }
  const json_type type = json_object_get_type(array);
  if (type != json_type_array) {
    HEARTH_LOG(LOG_ERROR, "Object is not array '%s'!\n", json_type_to_name(type));
    return nullptr;
  }
  const std::size_t length = json_object_array_length(array);
  if (length <= index) {
    HEARTH_LOG(LOG_ERROR, "Request wrong index num=%d len=%d!\n", static_cast<int>(index),
               static_cast<int>(length));
    return nullptr;
  }
  json_object* const element = json_object_array_get_idx(array, index);
  if (element == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Cannot get array index num=%d len=%d!\n", static_cast<int>(index),
               static_cast<int>(length));
  }
  return element;
}

}  // namespace

void logWrongIndex(const char* token, std::size_t size) {
  HEARTH_LOG(LOG_ERROR, "Wrong array index %s - size:%d\n", token, static_cast<int>(size));
}

// Looks the token up in the container and puts what it finds into value_.
bool PathLookup::lookUp(Cursor token, json_object* container) {
  WALK_LOG(LOG_DEBUG, "%s: Parse: idx=%d key=%s isEnd=%s\n", kOperation,
           static_cast<int>(token - tokens_.first()), *token, isLast(token) ? "true" : "false");
  if (isIndexToken(*token)) {
    value_ = findElement(container, *token, PathTokens::lengthAt(token), index_);
    return value_ != nullptr;
  }
  if (json_object_object_get_ex(container, *token, &value_) == 0) {
    return false;
  }
  WALK_LOG(LOG_DEBUG, "%s: %s%s\n", kOperation,
           isLast(token) ? "found the object " : "continue search next key",
           isLast(token) ? *token : "");
  return true;
}

// Every walk that has cut its path ends here, whatever it found: the line says FOUND also where
// nothing was.
void PathLookup::noteParent(Cursor token, json_object* parent) {
  parent_ = parent;
  WALK_LOG(LOG_INFO, "%s: FOUND parent=%s, key=%s\n", kOperation, Address(parent).text(), *token);
}

PathLookup::Outcome PathLookup::walk(json_object* root, const char* path) {
  // The walk stands in `current`, and `previous` is the container of that. A walk that reaches the
  // last token reports `current` as the parent; one that is lost before logs `previous`.
  const Cursor last = tokens_.first() + tokens_.count() - 1;
  json_object* previous = root;
  json_object* current = root;
  for (Cursor token = tokens_.first();; ++token) {
    const bool isFound = lookUp(token, current);
    if (token == last) {
      noteParent(token, current);
      return isFound ? Outcome::kFound : Outcome::kMissing;
    }
    if (!isFound) {
      WALK_LOG(LOG_DEBUG, "%s: cannot found the object %s\n", kOperation, path);
      noteParent(token, previous);
      return Outcome::kLostOnWay;
    }
    previous = current;
    current = value_;
  }
}

PathLookup::Outcome PathLookup::find(json_object* root, const char* path) {
  if (root == nullptr || path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params jobj=%s path=%s\n", kOperation, Address(root).text(),
               Address(path).text());
    return Outcome::kRefused;
  }
  // The empty path has no token, and the root no container.
  if (path[0] == '\0') {
    value_ = root;
    return Outcome::kRoot;
  }
  // A path without memory for its tokens is lost like one whose first member is missing: callers
  // get neither a container nor a key.
  if (!tokens_.cut(path)) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the path\n", kOperation);
    return Outcome::kLostOnWay;
  }
  return walk(root, path);
}

}  // namespace hearth
