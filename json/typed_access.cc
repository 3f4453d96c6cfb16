// Typed reading and writing of scalars. What differs between the types stands in one traits struct
// each; every operation has one body.
#include <cstdio>
#include <type_traits>

#include "hearth/tree_map_object.h"
#include "json/handle.h"
#include "json/json_ref.h"
#include "json/path_lookup.h"
#include "json/path_store.h"
#include "json/scalar_value.h"
#include "log/log.h"

namespace hearth {
namespace {

struct NumberTraits {
  static bool accepts(json_type type) { return type == json_type_int || type == json_type_double; }
  static constexpr char kWrongType[] = "object '%s' is not number!\n";
};

template <typename T>
struct Traits;

template <>
struct Traits<int> : NumberTraits {
  static int read(json_object* value) { return json_object_get_int(value); }
  static constexpr char kMissing[] =
      "object '%s' is not available, assign default int value as 0\n";
  static constexpr char kAbsent[] =
      "Cannot get integer value for object %s due to the attribute is NULL\n";
  static constexpr char kNotSet[] = "TreeMapObject::set: fail to set integer value to %s\n";
  static constexpr char kNotAdded[] =
      "TreeMapObject::set: fail to add integer value to the array\n";
};

template <>
struct Traits<unsigned int> : Traits<int> {};

template <>
struct Traits<double> : NumberTraits {
  static double read(json_object* value) { return json_object_get_double(value); }
  static constexpr char kMissing[] =
      "object '%s' is not available, assign default double value as 0.0\n";
  static constexpr char kAbsent[] =
      "Cannot get double value for object %s due to the attribute is NULL\n";
  static constexpr char kNotSet[] = "TreeMapObject::set: fail to set double value to %s\n";
  static constexpr char kNotAdded[] = "TreeMapObject::set: fail to add double value to the array\n";
};

template <>
struct Traits<bool> {
  static bool accepts(json_type type) { return type == json_type_boolean; }
  static bool read(json_object* value) { return json_object_get_boolean(value) != 0; }
  static constexpr char kWrongType[] = "object '%s' is not boolean!\n";
  static constexpr char kMissing[] =
      "object '%s' is not available, assign default bool value as false\n";
  static constexpr char kAbsent[] =
      "Cannot get boolean value for object %s due to the attribute is NULL\n";
  static constexpr char kNotSet[] = "TreeMapObject::set: fail to set boolean value to %s\n";
  static constexpr char kNotAdded[] =
      "TreeMapObject::set: fail to add boolean value to the array\n";
};

template <>
struct Traits<const char*> {
  static bool accepts(json_type type) { return type == json_type_string; }
  static const char* read(json_object* value) { return json_object_get_string(value); }
  static constexpr char kWrongType[] = "object '%s' is not string!\n";
  static constexpr char kMissing[] =
      "object '%s' is not available, assign default string value as NULL\n";
  static constexpr char kAbsent[] =
      "Cannot get string value for object %s due to the attribute is NULL\n";
  static constexpr char kNotSet[] = "TreeMapObject::set: fail to set string value to %s\n";
  static constexpr char kNotAdded[] = "TreeMapObject::set: fail to add string value to the array\n";
};

template <typename T>
constexpr bool isText = std::is_same<T, const char*>::value;

// The value to store. Null for a text that cannot be one, after its line; for other types null only
// without memory, which the store must then not take for JSON null.
template <typename T>
JsonRef makeScalar(T value) {
  JsonRef made(newScalar(value));
  if (isText<T> && made == nullptr) {
    HEARTH_LOG(LOG_ERROR, "TreeMapObject::setting NULL for string, ignore\n");
  }
  return made;
}

template <typename T>
void setValue(json_object* root, const char* path, T value) {
  const JsonRef made = makeScalar(value);
  if (made == nullptr && isText<T>) {
    return;
  }
  if (made == nullptr || !PathStore(root, path, made.get()).store()) {
    HEARTH_LOG(LOG_ERROR, Traits<T>::kNotSet, printable(path));
  }
}

template <typename T>
T getValue(json_object* root, const char* path) {
  json_object* const value = PathLookup(root, path).value();
  if (value == nullptr) {
    HEARTH_LOG(LOG_DEBUG, Traits<T>::kMissing, printable(path));
    return T();
  }
  if (!Traits<T>::accepts(json_object_get_type(value))) {
    HEARTH_LOG(LOG_WARNING, Traits<T>::kWrongType, printable(path));
  }
  return Traits<T>::read(value);
}

template <typename T>
bool getChecked(json_object* root, const char* path, T& out) {
  if constexpr (isText<T>) {
    out = nullptr;
  }
  json_object* const value = PathLookup(root, path).value();
  if (value == nullptr) {
    HEARTH_LOG(LOG_ERROR, Traits<T>::kAbsent, printable(path));
    return false;
  }
  if (!Traits<T>::accepts(json_object_get_type(value))) {
    HEARTH_LOG(LOG_WARNING, Traits<T>::kWrongType, printable(path));
    return false;
  }
  out = Traits<T>::read(value);
  return true;
}

template <typename T>
int addValue(const TreeMapObject& array, T value) {
  const int length = array.len();
  if (length < 0) {
    return -1;
  }
  const JsonRef made = makeScalar(value);
  if (made == nullptr && isText<T>) {
    return -1;
  }
  char path[16];
  std::snprintf(path, sizeof path, "[%d]", length);
  if (made == nullptr || !PathStore(array.jobj, path, made.get()).store()) {
    HEARTH_LOG(LOG_ERROR, Traits<T>::kNotAdded);
    return -1;
  }
  return length;
}

}  // namespace
}  // namespace hearth

// Each operation for each of its types.
#define DEFINE_SET(T)                                     \
  template <>                                             \
  void TreeMapObject::set<T>(const char* path, T value) { \
    hearth::setValue<T>(jobj, path, value);               \
  }
#define DEFINE_GET(T)                               \
  template <>                                       \
  T TreeMapObject::get<T>(const char* path) const { \
    return hearth::getValue<T>(jobj, path);         \
  }
#define DEFINE_GET_EX(T)                                          \
  template <>                                                     \
  bool TreeMapObject::get_ex<T>(const char* path, T& out) const { \
    return hearth::getChecked<T>(jobj, path, out);                \
  }
#define DEFINE_ADD(T)                           \
  template <>                                   \
  int TreeMapObject::addArrayItem<T>(T value) { \
    return hearth::addValue<T>(*this, value);   \
  }

DEFINE_SET(int)
DEFINE_SET(unsigned int)
DEFINE_SET(double)
DEFINE_SET(bool)
DEFINE_SET(const char*)

DEFINE_GET(int)
DEFINE_GET(double)
DEFINE_GET(bool)
DEFINE_GET(const char*)

DEFINE_GET_EX(int)
DEFINE_GET_EX(double)
DEFINE_GET_EX(bool)
DEFINE_GET_EX(const char*)

DEFINE_ADD(int)
DEFINE_ADD(bool)
DEFINE_ADD(double)
DEFINE_ADD(const char*)
