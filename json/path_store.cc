#include "json/path_store.h"

#include <cstdio>

#include "json/containment.h"
#include "json/deep_release.h"
#include "json/json_ref.h"
#include "json/path_index.h"
#include "log/log.h"

namespace hearth {
namespace {

// The walk's lines name their operation in two ways.
constexpr char kShortName[] = "setJObj";
constexpr char kOperation[] = "JsonData::setJObj";

bool appendsToRoot(json_object* root, const char* path) {
  return json_object_is_type(root, json_type_array) != 0 && path != nullptr && path[0] != '\0' &&
         !isIndexToken(path);
}

// The path into a new element at the end of an array.
struct AppendPath {
  AppendPath(json_object* array, const char* path) {
    HEARTH_LOG(LOG_WARNING, "%s: setting an TMO into an array, append it to the array by default\n",
               kOperation);
    std::snprintf(text, sizeof text, "[%d].%s", static_cast<int>(json_object_array_length(array)),
                  path);
  }

  char text[256];  // longer paths are cut
};

}  // namespace

// A debug line of the walk; its arguments cost nothing when such lines are off.
#define WALK_LOG(format, ...)                                        \
  do {                                                               \
    if (debug_) {                                                    \
      Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, format, __VA_ARGS__); \
    }                                                                \
  } while (false)

PathStore::PathStore(json_object* root, const char* path, json_object* value)
    : path_(path),
      tokens_(appendsToRoot(root, path) ? AppendPath(root, path).text
                                        : (path != nullptr ? path : "")),
      value_(value),
      debug_(logs(LOG_DEBUG)),
      current_(root) {}

bool PathStore::store() {
  if (!isUsable()) {
    return false;
  }
  // Taken first: a value that the tree already holds must survive the release of its old place.
  JsonRef reference(json_object_get(value_));
  for (std::size_t position = 0; position < tokens_.count(); ++position) {
    if (!step(position)) {
      return false;
    }
  }
  static_cast<void>(reference.release());
  WALK_LOG("%s: FOUND parent=%p key=%s\n", kShortName, static_cast<void*>(current_),
           tokens_.last());
  return true;
}

bool PathStore::isUsable() const {
  if (current_ == nullptr || path_ == nullptr || path_[0] == '\0') {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params jobj=%p path=%p\n", kOperation,
               static_cast<void*>(current_), static_cast<const void*>(path_));
    return false;
  }
  if (tokens_.count() == 0) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the path\n", kOperation);
    return false;
  }
  return true;
}

bool PathStore::step(std::size_t position) {
  const char* const token = tokens_[position];
  const bool isEnd = position + 1 == tokens_.count();
  position_ = position;
  WALK_LOG("%s: Parse: idx=%d key=%s isEnd=%s\n", kShortName, static_cast<int>(position), token,
           isEnd ? "true" : "false");
  if (!(isIndexToken(token) ? indexStep(position, isEnd) : memberStep(token, isEnd))) {
    return false;
  }
  previousKey_ = token;
  return true;
}

bool PathStore::memberStep(const char* token, bool isEnd) {
  return isEnd ? putMember(token) : enterMember(token);
}

bool PathStore::putMember(const char* token) {
  WALK_LOG("%s: set jval to current object jcrr=%p jval=%p %s.%s\n", kOperation,
           static_cast<void*>(current_), static_cast<void*>(value_), previousKey_, token);
  if (refusesCycle(token)) {
    return false;
  }
  if (json_object_is_type(current_, json_type_object) == 0 ||
      json_object_object_add(current_, token, value_) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add jval '%s' to jcrr=%p jprt=%p\n", kOperation, token,
               static_cast<void*>(current_), static_cast<void*>(parent_));
    return false;
  }
  return true;
}

bool PathStore::enterMember(const char* token) {
  json_object* child = nullptr;
  isNew_ = json_object_object_get_ex(current_, token, &child) == 0;
  WALK_LOG("%s: get child object at '%s.%s' isNew=%s\n", kOperation, previousKey_, token,
           isNew_ ? "true" : "false");
  if (isNew_ && !makeMember(token, child)) {
    return false;
  }
  moveTo(child);
  return true;
}

bool PathStore::makeMember(const char* token, json_object*& child) {
  WALK_LOG("%s: create new empty jchl to current object %s.%s\n", kOperation, previousKey_, token);
  if (json_object_is_type(current_, json_type_object) != 0) {
    JsonRef made(newContainer(json_object_new_object(), position_));
    if (made != nullptr && json_object_object_add(current_, token, made.get()) == 0) {
      child = made.release();
      return true;
    }
  }
  HEARTH_LOG(LOG_ERROR, "%s: fail to add new object '%s'\n", kOperation, token);
  return false;
}

bool PathStore::indexStep(std::size_t position, bool isEnd) {
  const char* const token = tokens_[position];
  uint32_t index = 0;
  if (!indexOfToken(token, tokens_.length(position), index)) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong array format %s\n", kOperation, token);
    return false;
  }
  if (json_object_is_type(current_, json_type_array) == 0 && !replaceByArray()) {
    return false;
  }
  if (json_object_array_length(current_) > index) {
    return isEnd ? putElement(index, token) : enterElement(index, token);
  }
  WALK_LOG("%s: add new array element at %d '%s.%s'\n", kOperation, static_cast<int>(index),
           previousKey_, token);
  return isEnd ? appendValue(index) : appendObject(index);
}

bool PathStore::replaceByArray() {
  if (!isNew_) {
    HEARTH_LOG(LOG_ERROR, "%s: existing object is not array '%s'\n", kOperation, previousKey_);
    return false;
  }
  WALK_LOG("%s: recreate array object '%s' delete %p=%d\n", kShortName, previousKey_,
           static_cast<void*>(current_), 1);
  JsonRef array(newContainer(json_object_new_array(), position_));
  bool placed = false;
  if (array != nullptr) {
    if (json_object_is_type(parent_, json_type_array) != 0) {
      const std::size_t end = json_object_array_length(parent_);
      placed = json_object_array_put_idx(parent_, end - 1, array.get()) == 0;
    } else {
      json_object_object_del(parent_, previousKey_);
      placed = json_object_object_add(parent_, previousKey_, array.get()) == 0;
    }
  }
  if (!placed) {
    HEARTH_LOG(LOG_ERROR, "%s: cannot add new array element!\n", kOperation);
    return false;
  }
  current_ = array.release();
  return true;
}

bool PathStore::putElement(uint32_t index, const char* token) {
  WALK_LOG("%s: replace array element at idx=%d '%s.%s'\n", kOperation, static_cast<int>(index),
           previousKey_, token);
  if (refusesCycle(token)) {
    return false;
  }
  if (json_object_array_put_idx(current_, index, value_) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to replace array element %d %s.%s\n", kOperation,
               static_cast<int>(index), previousKey_, token);
    return false;
  }
  return true;
}

bool PathStore::enterElement(uint32_t index, const char* token) {
  WALK_LOG("%s: get array element at idx=%d, '%s.%s'\n", kOperation, static_cast<int>(index),
           previousKey_, token);
  json_object* const child = json_object_array_get_idx(current_, index);
  if (child == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: cannot get array element at idx=%d '%s.%s'\n", kOperation,
               static_cast<int>(index), previousKey_, token);
    return false;
  }
  moveTo(child);
  return true;
}

bool PathStore::appendValue(uint32_t index) {
  if (refusesCycle(tokens_.last())) {
    return false;
  }
  if (json_object_array_add(current_, value_) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add new array element idx=%d key=%s\n", kOperation,
               static_cast<int>(index), previousKey_);
    return false;
  }
  return true;
}

bool PathStore::appendObject(uint32_t index) {
  JsonRef made(newContainer(json_object_new_object(), position_));
  if (made == nullptr || json_object_array_add(current_, made.get()) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add new array element idx=%d key=%s\n", kOperation,
               static_cast<int>(index), previousKey_);
    return false;
  }
  isNew_ = true;
  moveTo(made.release());
  return true;
}

bool PathStore::refusesCycle(const char* token) const {
  if (!mayContain(value_, current_)) {
    return false;
  }
  HEARTH_LOG(LOG_ERROR, "%s: jval=%p cannot be stored inside itself at '%s.%s'\n", kOperation,
             static_cast<void*>(value_), previousKey_, token);
  return true;
}

void PathStore::moveTo(json_object* child) {
  parent_ = current_;
  current_ = child;
}

}  // namespace hearth
