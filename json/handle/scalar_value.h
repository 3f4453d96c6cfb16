// Makes a JSON scalar of each type that handles take.
#ifndef HEARTH_JSON_HANDLE_SCALAR_VALUE_H
#define HEARTH_JSON_HANDLE_SCALAR_VALUE_H

#include <json-c/json.h>

#include <cstdint>

namespace hearth {

// Each gives one reference to the caller; null without memory and for a null text.
inline json_object* newScalar(int value) {
  return json_object_new_int(value);
}
// Numbers above INT_MAX become negative.
inline json_object* newScalar(unsigned int value) {
  return json_object_new_int(static_cast<int32_t>(value));
}
inline json_object* newScalar(double value) {
  return json_object_new_double(value);
}
inline json_object* newScalar(bool value) {
  return json_object_new_boolean(value ? 1 : 0);
}
inline json_object* newScalar(const char* value) {
  return value != nullptr ? json_object_new_string(value) : nullptr;
}

}  // namespace hearth

#endif
