// Finds every object that has a member of a given name and scalar value, in document order. The
// type of the value sought decides the type that a member must have.
//
// The search goes down into each container as it comes to it and resumes behind it later. Where it
// has to resume stands in a list of levels, from the root to the innermost container: values may be
// nested deeper than a request thread's stack is, so nothing recurses.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

#include "base/json_members.h"
#include "base/json_ref.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/depth.h"
#include "json/handle/handle.h"
#include "json/handle/scalar_value.h"
#include "log/library_log.h"

namespace hearth {
namespace {

using Handles = std::list<TreeMapObject*>;

// One container on the way down, and the point at which the search resumes in it.
struct Level {
  json_object* container;
  lh_entry* member;   // of an object: the next one to look at
  std::size_t index;  // of an array: the next element to look at, and how many there are
  std::size_t length;
  bool isObject;
};

// One search: the value sought, the objects found so far, and the way down from the root.
class ValueSearch {
 public:
  ValueSearch(Handles& result, const char* key, json_object* probe)
      : result_(result), key_(key), probe_(probe), type_(json_object_get_type(probe)) {}
  ValueSearch(const ValueSearch&) = delete;
  ValueSearch& operator=(const ValueSearch&) = delete;

  void in(json_object* root, json_type type);
  int found() const { return found_; }

 private:
  static constexpr std::size_t kUsualLevels = 32;  // as many as a parsed document has

  [[gnu::always_inline]] inline void enter(json_object* container, json_type type);
  [[nodiscard]] bool makeRoom();
  // Each resumes at the innermost level and stops at the next container inside. True when it has
  // come to one; false when the level is done.
  bool resumeObject();
  bool resumeArray();
  inline bool matches(const char* name, json_object* member, json_type type) const;
  bool append(json_object* object);

  Handles& result_;
  const char* const key_;
  json_object* const probe_;
  const json_type type_;
  int found_ = 0;

  std::size_t depth_ = 0;
  std::size_t room_ = kUsualLevels;
  Level* levels_ = usualLevels_;
  Level usualLevels_[kUsualLevels];
  std::unique_ptr<Level[]> longLevels_;  // in place of the usual ones when those are full
};

void ValueSearch::in(json_object* root, json_type type) {
  enter(root, type);
  while (depth_ > 0) {
    if (!(levels_[depth_ - 1].isObject ? resumeObject() : resumeArray())) {
      --depth_;
    }
  }
}

// Adds a level for the container. Without memory for it the container is left out.
inline void ValueSearch::enter(json_object* container, json_type type) {
  if (__builtin_expect(static_cast<long>(depth_ == room_), 0L) != 0 && !makeRoom()) {
    return;
  }
  const bool isObject = type == json_type_object;
  lh_entry* const first = isObject ? firstMember(json_object_get_object(container)) : nullptr;
  const std::size_t length = isObject ? 0 : json_object_array_length(container);
  levels_[depth_++] = {container, first, 0, length, isObject};
}

bool ValueSearch::makeRoom() {
  std::unique_ptr<Level[]> levels(new (std::nothrow) Level[2 * room_]);
  if (levels == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory to search deeper\n", "find");
    return false;
  }
  std::copy_n(levels_, depth_, levels.get());
  longLevels_ = std::move(levels);
  levels_ = longLevels_.get();
  room_ *= 2;
  return true;
}

bool ValueSearch::resumeObject() {
  Level& level = levels_[depth_ - 1];
  bool matched = false;
  for (lh_entry* entry = level.member; entry != nullptr; entry = memberAfter(entry)) {
    auto* const member = static_cast<json_object*>(lh_entry_v(entry));
    const json_type type = json_object_get_type(member);
    if (isContainerType(type)) {
      level.member = memberAfter(entry);
      enter(member, type);
      return true;
    }
    // An object is found once, however often it has the member behind each of its containers.
    if (!matched && matches(static_cast<const char*>(lh_entry_k(entry)), member, type)) {
      matched = append(level.container);
    }
  }
  return false;
}

bool ValueSearch::resumeArray() {
  Level& level = levels_[depth_ - 1];
  json_object* const array = level.container;
  for (std::size_t i = level.index; i < level.length; ++i) {
    json_object* const element = json_object_array_get_idx(array, i);
    const json_type type = json_object_get_type(element);
    if (isContainerType(type)) {
      level.index = i + 1;
      enter(element, type);
      return true;
    }
    if (element == nullptr) {
      HEARTH_LOG(LOG_WARNING, "Found null object in the array\n");
    } else {
      HEARTH_LOG(LOG_WARNING, "%s: array items have primary type", "findInArray");
    }
  }
  return false;
}

bool ValueSearch::matches(const char* name, json_object* member, json_type type) const {
  return std::strcmp(name, key_) == 0 && JsonData::compareObjVal(probe_, type_, member, type) == 1;
}

// Each object found gets a handle that owns a reference, so the result outlives the document.
bool ValueSearch::append(json_object* object) {
  TreeMapObject* const handle = newOwningHandle(json_object_get(object));
  if (handle == nullptr) {
    return false;
  }
  try {
    result_.push_back(handle);
  } catch (const std::bad_alloc&) {
    delete handle;
    return false;
  }
  ++found_;
  return true;
}

// True when the container is of the type and can be searched. Logs a null argument; a container of
// another type has no line.
bool checkArguments(const char* operation, const char* key, json_object* probe,
                    json_object* container, json_type type) {
  if (probe == nullptr || key == nullptr || container == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: NULL arguments is not accepted\n", operation);
    return false;
  }
  return json_object_is_type(container, type) != 0;
}

// Takes over the reference to the value sought. Only the search for a text logs that nothing was
// found.
Handles findMatches(const TreeMapObject& handle, const char* key, json_object* adopted,
                    bool reportsNoMatch) {
  const JsonRef probe(adopted);
  Handles result;
  if (key == nullptr || key[0] == '\0') {
    HEARTH_LOG(LOG_ERROR, "Key is null or empty\n");
    return result;
  }
  bool wrongRoot = false;
  if (handle.jobj != nullptr && probe != nullptr) {
    if (json_object_is_type(handle.jobj, json_type_object) != 0) {
      handle.findInObject(result, key, probe.get(), handle.jobj);
    } else if (json_object_is_type(handle.jobj, json_type_array) != 0) {
      handle.findInArray(result, key, probe.get(), handle.jobj);
    } else {
      HEARTH_LOG(LOG_ERROR, "parent object is not object neither array\n");
      wrongRoot = true;
    }
  }
  if (wrongRoot || (reportsNoMatch && result.empty())) {
    HEARTH_LOG(LOG_ERROR, "Some error happened, cannot return result\n");
  }
  return result;
}

}  // namespace
}  // namespace hearth

int TreeMapObject::findInObject(std::list<TreeMapObject*>& result, const char* key,
                                json_object* probe, json_object* object) const {
  if (!hearth::checkArguments("findInObject", key, probe, object, json_type_object)) {
    return 0;
  }
  hearth::ValueSearch search(result, key, probe);
  search.in(object, json_type_object);
  return search.found();
}

int TreeMapObject::findInArray(std::list<TreeMapObject*>& result, const char* key,
                               json_object* probe, json_object* array) const {
  if (!hearth::checkArguments("findInArray", key, probe, array, json_type_array)) {
    return 0;
  }
  hearth::ValueSearch search(result, key, probe);
  search.in(array, json_type_array);
  return search.found();
}

#define DEFINE_FIND(T)                                                               \
  template <>                                                                        \
  std::list<TreeMapObject*> TreeMapObject::find<T>(const char* key, T value) const { \
    return hearth::findMatches(*this, key, hearth::newScalar(value),                 \
                               std::is_same<T, const char*>::value);                 \
  }

DEFINE_FIND(int)
DEFINE_FIND(unsigned int)
DEFINE_FIND(double)
DEFINE_FIND(bool)
DEFINE_FIND(const char*)
