// Finds a value in its container by address: under the name or index that the key gives, and when
// it is not there, by looking at every member or element.
#include "json/handle/relink.h"

#include <json-c/json.h>

#include <cstddef>
#include <cstring>

#include "json/path/index.h"

namespace hearth {
namespace {

// Null when the old value is not in the object.
const char* nameOf(json_object* object, const char* key, json_object* old) {
  json_object* named = nullptr;
  if (json_object_object_get_ex(object, key, &named) != 0 && named == old) {
    return key;
  }
  json_object_object_foreach(object, name, member) {
    if (member == old) {
      return name;
    }
  }
  return nullptr;
}

bool isAt(json_object* array, std::size_t index, json_object* old) {
  return index < json_object_array_length(array) && json_object_array_get_idx(array, index) == old;
}

// The array's length when the old value is not in it.
std::size_t indexOf(json_object* array, const char* key, json_object* old) {
  const std::size_t keyLength = std::strlen(key);
  // readIndexText has no side effect. The walk that wrote the key has reported what is left over.
  if (isIndexToken(key) && keyLength > 2) {
    const std::size_t named = readIndexText(key + 1, keyLength - 2).value;
    if (isAt(array, named, old)) {
      return named;
    }
  }
  std::size_t index = 0;
  while (index < json_object_array_length(array) && !isAt(array, index, old)) {
    ++index;
  }
  return index;
}

}  // namespace

bool contains(json_object* container, const char* key, json_object* value) {
  return json_object_is_type(container, json_type_object) != 0
             ? nameOf(container, key, value) != nullptr
             : indexOf(container, key, value) < json_object_array_length(container);
}

bool relink(json_object* container, const char* key, json_object* old, json_object* made) {
  if (json_object_is_type(container, json_type_object) != 0) {
    const char* const name = nameOf(container, key, old);
    return name != nullptr && json_object_object_add(container, name, made) == 0;
  }
  const std::size_t index = indexOf(container, key, old);
  return index < json_object_array_length(container) &&
         json_object_array_put_idx(container, index, made) == 0;
}

}  // namespace hearth
