// The steps of the walk, in the order in which a path meets them: members, then indexes, then the
// objects and arrays that are made on the way. Each step logs what it is about to do and, when it
// fails, one error line of its own.
#include "json/path/store.h"

#include <cstdio>

#include "base/address.h"
#include "base/json_ref.h"
#include "json/depth.h"
#include "json/path/containment.h"
#include "json/path/index.h"
#include "json/path/walk_log.h"

namespace hearth {
namespace {

// The walk's lines name their operation in two ways.
constexpr char kShortName[] = "setJObj";
constexpr char kOperation[] = "JsonData::setJObj";

// The path to take when a name is stored into an array: into a new element at the array's end.
struct AppendPath {
  AppendPath(json_object* array, const char* path) {
    HEARTH_LOG(LOG_WARNING, "%s: setting an TMO into an array, append it to the array by default\n",
               kOperation);
    std::snprintf(text, sizeof(text), "[%d].%s", static_cast<int>(json_object_array_length(array)),
                  path);
  }

  char text[256];  // longer paths are cut
};

}  // namespace

bool PathStore::store() {
  if (!cutPath()) {
    return false;
  }
  // The tree's own reference, taken before the walk: putting the value releases what stood there,
  // which may hold the last other reference on it.
  JsonRef reference(json_object_get(value_));
  last_ = tokens_.first() + tokens_.count() - 1;
  for (token_ = tokens_.first(); token_ <= last_; ++token_) {
    if (!step()) {
      return false;
    }
  }
  // The last step has put the value, and the tree owns the reference from there on.
  static_cast<void>(reference.release());
  WALK_LOG(LOG_DEBUG, "%s: FOUND parent=%s key=%s\n", kShortName, Address(current_).text(),
           tokens_.last());
  return true;
}

bool PathStore::cutPath() {
  if (current_ == nullptr || path_ == nullptr || path_[0] == '\0') {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params jobj=%s path=%s\n", kOperation,
               Address(current_).text(), Address(path_).text());
    return false;
  }
  if (!tokens_.cut(appendsToRoot() ? AppendPath(current_, path_).text : path_)) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the path\n", kOperation);
    return false;
  }
  return true;
}

// A name cannot be looked up in an array, so a root that is one gets a new element for it.
bool PathStore::appendsToRoot() const {
  return json_object_is_type(current_, json_type_array) != 0 && !isIndexToken(path_);
}

// Looks at the current token and takes the step that it calls for.
bool PathStore::step() {
  WALK_LOG(LOG_DEBUG, "%s: Parse: idx=%d key=%s isEnd=%s\n", kShortName, position(), *token_,
           isLast() ? "true" : "false");
  if (isIndexToken(*token_)) {
    return indexStep();
  }
  return isLast() ? putMember() : enterMember();
}

// Goes down into a member, making it when it is missing. An object that this walk has made is
// empty, so nothing has to be looked up in it, and all that follows is new as well.
bool PathStore::enterMember() {
  json_object* child = nullptr;
  isNew_ = isNew_ || json_object_object_get_ex(current_, *token_, &child) == 0;
  WALK_LOG(LOG_DEBUG, "%s: get child object at '%s.%s' isNew=%s\n", kOperation, previousKey(),
           *token_, isNew_ ? "true" : "false");
  if (isNew_ && !makeMember(child)) {
    return false;
  }
  moveTo(child);
  return true;
}

// The last step of a path that ends with a name.
bool PathStore::putMember() {
  WALK_LOG(LOG_DEBUG, "%s: set jval to current object jcrr=%s jval=%s %s.%s\n", kOperation,
           Address(current_).text(), Address(value_).text(), previousKey(), *token_);
  if (memberClosesCycle() || !addMember(value_, isNew_)) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add jval '%s' to jcrr=%s jprt=%s\n", kOperation, *token_,
               Address(current_).text(), Address(parent_).text());
    return false;
  }
  return true;
}

// The object made may turn out to be an array: the next token tells, and replaceByArray mends it.
bool PathStore::makeMember(json_object*& child) {
  WALK_LOG(LOG_DEBUG, "%s: create new empty jchl to current object %s.%s\n", kOperation,
           previousKey(), *token_);
  JsonRef made(newObject());
  if (made == nullptr || !addMember(made.get(), true)) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add new object '%s'\n", kOperation, *token_);
    return false;
  }
  child = made.release();
  return true;
}

// Adds a member to the current value under the token. The type is checked because json-c takes it
// on trust. json-c does not search for a name that it is told is new.
bool PathStore::addMember(json_object* member, bool isNewName) {
  return json_object_is_type(current_, json_type_object) != 0 &&
         json_object_object_add_ex(current_, *token_, member,
                                   isNewName ? JSON_C_OBJECT_ADD_KEY_IS_NEW : 0U) == 0;
}

// An index below the length names an element. Every other one, however large, means the end.
bool PathStore::indexStep() {
  uint32_t index = 0;
  if (!indexOfToken(*token_, PathTokens::lengthAt(token_), index)) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong array format %s\n", kOperation, *token_);
    return false;
  }
  if (json_object_is_type(current_, json_type_array) == 0 && !replaceByArray()) {
    return false;
  }
  if (json_object_array_length(current_) > index) {
    return isLast() ? putElement(index) : enterElement(index);
  }
  WALK_LOG(LOG_DEBUG, "%s: add new array element at %d '%s.%s'\n", kOperation,
           static_cast<int>(index), previousKey(), *token_);
  return isLast() ? appendValue(index) : appendObject(index);
}

// Only an object made by this walk may be replaced: it is empty, and nobody else knows it.
bool PathStore::replaceByArray() {
  if (!isNew_) {
    HEARTH_LOG(LOG_ERROR, "%s: existing object is not array '%s'\n", kOperation, previousKey());
    return false;
  }
  WALK_LOG(LOG_DEBUG, "%s: recreate array object '%s' delete %s=%d\n", kShortName, previousKey(),
           Address(current_).text(), 1);
  JsonRef array(json_object_new_array());
  bool isReplaced = false;
  if (array != nullptr) {
    if (json_object_is_type(parent_, json_type_array) != 0) {
      // appendObject has just put the object there, as the last element.
      const std::size_t end = json_object_array_length(parent_);
      isReplaced = json_object_array_put_idx(parent_, end - 1, array.get()) == 0;
    } else {
      // The object just made is the last member, so the array comes to the same position.
      json_object_object_del(parent_, previousKey());
      isReplaced = json_object_object_add(parent_, previousKey(), array.get()) == 0;
    }
  }
  if (!isReplaced) {
    HEARTH_LOG(LOG_ERROR, "%s: cannot add new array element!\n", kOperation);
    return false;
  }
  current_ = array.release();
  return true;
}

// The last step of a path that ends with the index of an element.
bool PathStore::putElement(uint32_t index) {
  WALK_LOG(LOG_DEBUG, "%s: replace array element at idx=%d '%s.%s'\n", kOperation,
           static_cast<int>(index), previousKey(), *token_);
  if (elementClosesCycle(index) || json_object_array_put_idx(current_, index, value_) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to replace array element %d %s.%s\n", kOperation,
               static_cast<int>(index), previousKey(), *token_);
    return false;
  }
  return true;
}

// An element that holds JSON null cannot be entered, and is not replaced either.
bool PathStore::enterElement(uint32_t index) {
  WALK_LOG(LOG_DEBUG, "%s: get array element at idx=%d, '%s.%s'\n", kOperation,
           static_cast<int>(index), previousKey(), *token_);
  json_object* const child = json_object_array_get_idx(current_, index);
  if (child == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: cannot get array element at idx=%d '%s.%s'\n", kOperation,
               static_cast<int>(index), previousKey(), *token_);
    return false;
  }
  moveTo(child);
  return true;
}

// The last step of a path that ends with an index past the end. `index` is for the line only: the
// value comes right behind the last element.
bool PathStore::appendValue(uint32_t index) {
  if (elementClosesCycle(json_object_array_length(current_) - 1) ||
      json_object_array_add(current_, value_) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add new array element idx=%d key=%s\n", kOperation,
               static_cast<int>(index), previousKey());
    return false;
  }
  return true;
}

// Makes the element that a path goes on in. It comes behind the last one too, and is empty, so the
// next token may turn it into an array.
bool PathStore::appendObject(uint32_t index) {
  JsonRef made(newObject());
  if (made == nullptr || json_object_array_add(current_, made.get()) != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to add new array element idx=%d key=%s\n", kOperation,
               static_cast<int>(index), previousKey());
    return false;
  }
  isNew_ = true;
  moveTo(made.release());
  return true;
}

json_object* PathStore::newObject() const {
  return tokens_.count() <= kMostTokensToMake ? json_object_new_object() : nullptr;
}

// A scalar closes no cycle. Storing a container onto its own place closes none either, so the value
// that stands there is handed to wouldCloseCycle as already held.
bool PathStore::memberClosesCycle() const {
  if (!isContainer(value_)) {
    return false;
  }
  json_object* held = nullptr;
  json_object_object_get_ex(current_, *token_, &held);
  return wouldCloseCycle(value_, current_, held);
}

// The neighbour is at hand and often the same value, as when one is appended again and again. Then
// it need not be searched.
bool PathStore::elementClosesCycle(std::size_t neighbour) const {
  return isContainer(value_) &&
         wouldCloseCycle(value_, current_, json_object_array_get_idx(current_, neighbour));
}

void PathStore::moveTo(json_object* child) {
  parent_ = current_;
  current_ = child;
}

}  // namespace hearth
