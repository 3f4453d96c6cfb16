// Typed reading and writing of scalars, for each type that handles take.
//
// Every operation has one body, which knows no type: it gets the type's row (the words of its log
// lines, and the JSON types that it accepts) and, for writing, a value that is made already. Only
// reading the C++ value out of json-c differs in code; the traits at each type's row do that. The
// macros at the end define the public templates, one line for each type of an operation.
#include <cstdint>
#include <cstdio>

#include "base/json_ref.h"
#include "hearth/tree_map_object.h"
#include "json/handle/handle.h"
#include "json/handle/scalar_value.h"
#include "json/path/lookup.h"
#include "json/path/store.h"
#include "log/library_log.h"

namespace hearth {
namespace {

// The row of a type: what the log lines call it, and which JSON types count as it.
struct Type {
  char name[8];
  char shortName[8];
  char kind[8];
  char standard[6];  // the default, as a line shows it
  uint8_t accepted;  // a bit per json_type
  bool isText;       // a null value is the caller's mistake, not lack of memory
};

constexpr uint8_t kNumbers = 1U << json_type_int | 1U << json_type_double;
constexpr Type kInteger = {"integer", "int", "number", "0", kNumbers, false};
constexpr Type kDouble = {"double", "double", "number", "0.0", kNumbers, false};
constexpr Type kBoolean = {"boolean", "bool", "boolean", "false", 1U << json_type_boolean, false};
constexpr Type kText = {"string", "string", "string", "NULL", 1U << json_type_string, true};

// Leads from a C++ type to its row, and reads it out of a json-c value. json-c converts a value of
// another type as well as it can.
template <typename T>
struct Traits;

template <>
struct Traits<int> {
  static constexpr const Type& kType = kInteger;
  static int read(json_object* value) { return json_object_get_int(value); }
};

// Only written, never read: it shares the row for the lines.
template <>
struct Traits<unsigned int> : Traits<int> {};

template <>
struct Traits<double> {
  static constexpr const Type& kType = kDouble;
  static double read(json_object* value) { return json_object_get_double(value); }
};

template <>
struct Traits<bool> {
  static constexpr const Type& kType = kBoolean;
  static bool read(json_object* value) { return json_object_get_boolean(value) != 0; }
};

template <>
struct Traits<const char*> {
  static constexpr const Type& kType = kText;
  static const char* read(json_object* value) { return json_object_get_string(value); }
};

// Logs a value that is not of the type.
bool checkType(const Type& type, json_object* value, const char* path) {
  const bool accepted = (type.accepted >> json_object_get_type(value) & 1) != 0;
  if (!accepted) {
    HEARTH_LOG(LOG_WARNING, "object '%s' is not %s!\n", printable(path), type.kind);
  }
  return accepted;
}

// Logs that a null text stores nothing.
void logNullText() {
  HEARTH_LOG(LOG_ERROR, "TreeMapObject::setting NULL for string, ignore\n");
}

// Stores a value that was made for this. Null means that none could be made: storing that would put
// JSON null into the document.
bool storeMade(json_object* root, const char* path, json_object* made) {
  return made != nullptr && PathStore(root, path, made).store();
}

// Stores at the path and takes over the reference: the tree, if it stores the value, has one of its
// own.
void setValue(json_object* root, const char* path, json_object* adopted, const Type& type) {
  const JsonRef made(adopted);
  if (storeMade(root, path, adopted)) {
    return;
  }
  if (adopted == nullptr && type.isText) {
    logNullText();
  } else {
    HEARTH_LOG(LOG_ERROR, "TreeMapObject::set: fail to set %s value to %s\n", type.name,
               printable(path));
  }
}

// Answers the value to read whatever its type is, with a warning where that differs; null when
// there is none.
json_object* findValue(json_object* root, const char* path, const Type& type) {
  json_object* const value = PathLookup(root, path).value();
  if (value == nullptr) {
    HEARTH_LOG(LOG_DEBUG, "object '%s' is not available, assign default %s value as %s\n",
               printable(path), type.shortName, type.standard);
  } else {
    static_cast<void>(checkType(type, value, path));
  }
  return value;
}

// Answers the value to read; null when there is none or it is of another type.
json_object* findChecked(json_object* root, const char* path, const Type& type) {
  json_object* const value = PathLookup(root, path).value();
  if (value == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Cannot get %s value for object %s due to the attribute is NULL\n",
               type.name, printable(path));
    return nullptr;
  }
  return checkType(type, value, path) ? value : nullptr;
}

// Appends to the array and answers the index; -1 when nothing was stored. Takes over the reference.
int addValue(const TreeMapObject& array, json_object* adopted, const Type& type) {
  const JsonRef made(adopted);
  const int length = array.len();
  if (length < 0) {
    return -1;
  }
  char path[16];
  std::snprintf(path, sizeof(path), "[%d]", length);
  if (storeMade(array.jobj, path, adopted)) {
    return length;
  }
  if (adopted == nullptr && type.isText) {
    logNullText();
  } else {
    HEARTH_LOG(LOG_ERROR, "TreeMapObject::set: fail to add %s value to the array\n", type.name);
  }
  return -1;
}

template <typename T>
T getValue(json_object* root, const char* path) {
  json_object* const value = findValue(root, path, Traits<T>::kType);
  return value != nullptr ? Traits<T>::read(value) : T();
}

template <typename T>
bool getChecked(json_object* root, const char* path, T& out) {
  // Only a text is written on failure: a caller must not use a pointer left from before.
  if constexpr (Traits<T>::kType.isText) {
    out = nullptr;
  }
  json_object* const value = findChecked(root, path, Traits<T>::kType);
  if (value != nullptr) {
    out = Traits<T>::read(value);
  }
  return value != nullptr;
}

}  // namespace
}  // namespace hearth

// Each operation for each of its types. There is no get of unsigned int.
#define DEFINE_SET(T)                                                                 \
  template <>                                                                         \
  void TreeMapObject::set<T>(const char* path, T value) {                             \
    hearth::setValue(jobj, path, hearth::newScalar(value), hearth::Traits<T>::kType); \
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
#define DEFINE_ADD(T)                                                                   \
  template <>                                                                           \
  int TreeMapObject::addArrayItem<T>(T value) {                                         \
    return hearth::addValue(*this, hearth::newScalar(value), hearth::Traits<T>::kType); \
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
