// Search by value: every object that has a member of a given name and scalar value, in document
// order. The type of the value sought decides the type that a member must have.
#include <cstring>
#include <new>
#include <type_traits>

#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/handle.h"
#include "json/json_ref.h"
#include "json/nesting.h"
#include "json/scalar_value.h"
#include "log/log.h"

namespace hearth {
namespace {

using Handles = std::list<TreeMapObject*>;

// One search: what is sought, and what was found so far.
class Search {
 public:
  Search(Handles& result, const char* key, json_object* probe)
      : result_(result), key_(key), probe_(probe), type_(json_object_get_type(probe)) {}

  void inObject(json_object* object, int levels);
  void inArray(json_object* array, int levels);
  int found() const { return found_; }

 private:
  inline void inContainer(json_object* container, json_type type, int levels);
  inline bool matches(const char* name, json_object* member, json_type type) const;
  bool append(json_object* object);

  Handles& result_;
  const char* const key_;
  json_object* const probe_;
  const json_type type_;
  int found_ = 0;
};

void Search::inObject(json_object* object, int levels) {
  bool matched = false;
  json_object_object_foreach(object, name, member) {
    const json_type type = json_object_get_type(member);
    if (isContainerType(type)) {
      inContainer(member, type, levels);
    } else if (!matched && matches(name, member, type)) {
      matched = append(object);
    }
  }
}

void Search::inArray(json_object* array, int levels) {
  const size_t length = json_object_array_length(array);
  for (size_t i = 0; i < length; ++i) {
    json_object* const element = json_object_array_get_idx(array, i);
    const json_type type = json_object_get_type(element);
    if (isContainerType(type)) {
      inContainer(element, type, levels);
    } else if (element == nullptr) {
      HEARTH_LOG(LOG_WARNING, "Found null object in the array\n");
    } else {
      HEARTH_LOG(LOG_WARNING, "%s: array items have primary type", "findInArray");
    }
  }
}

void Search::inContainer(json_object* container, json_type type, int levels) {
  if (levels == 0) {
    HEARTH_LOG(LOG_ERROR, "%s: nested too deep to be searched\n", "find");
  } else if (type == json_type_object) {
    inObject(container, levels - 1);
  } else {
    inArray(container, levels - 1);
  }
}

bool Search::matches(const char* name, json_object* member, json_type type) const {
  return std::strcmp(name, key_) == 0 && JsonData::compareObjVal(probe_, type_, member, type) == 1;
}

bool Search::append(json_object* object) {
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

// True when an object or array can be searched with these arguments.
bool isSearchable(const char* operation, const char* key, json_object* probe,
                  json_object* container, json_type type) {
  if (probe == nullptr || key == nullptr || container == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: NULL arguments is not accepted\n", operation);
    return false;
  }
  return json_object_is_type(container, type) != 0;
}

// Takes over the reference to what is sought.
Handles findValue(const TreeMapObject& handle, const char* key, json_object* adopted,
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
  if (!hearth::isSearchable("findInObject", key, probe, object, json_type_object)) {
    return 0;
  }
  hearth::Search search(result, key, probe);
  search.inObject(object, hearth::kWalkNesting);
  return search.found();
}

int TreeMapObject::findInArray(std::list<TreeMapObject*>& result, const char* key,
                               json_object* probe, json_object* array) const {
  if (!hearth::isSearchable("findInArray", key, probe, array, json_type_array)) {
    return 0;
  }
  hearth::Search search(result, key, probe);
  search.inArray(array, hearth::kWalkNesting);
  return search.found();
}

#define DEFINE_FIND(T)                                                               \
  template <>                                                                        \
  std::list<TreeMapObject*> TreeMapObject::find<T>(const char* key, T value) const { \
    return hearth::findValue(*this, key, hearth::newScalar(value),                   \
                             std::is_same<T, const char*>::value);                   \
  }

DEFINE_FIND(int)
DEFINE_FIND(unsigned int)
DEFINE_FIND(double)
DEFINE_FIND(bool)
DEFINE_FIND(const char*)
