// Compares two scalars of one type and logs both values.
//
// Types that differ compare as unequal, an integer and a double included. Null equals nothing, not
// even null. Two containers compare as equal, with a warning: callers rely on that answer of 1.
#include <cstring>

#include "hearth/json_data.h"
#include "log/library_log.h"

namespace hearth {
namespace {

constexpr char kOperation[] = "compareObjVal";

// Booleans come here too: json-c reads true as 1 and false as 0.
int sameInt(json_object* src, json_object* dst) {
  const int32_t srcValue = json_object_get_int(src);
  const int32_t dstValue = json_object_get_int(dst);
  HEARTH_LOG(LOG_DEBUG, "%s: srcVal= %ld dstVal= %ld\n", kOperation, static_cast<long>(srcValue),
             static_cast<long>(dstValue));
  return srcValue == dstValue ? 1 : 0;
}

int sameDouble(json_object* src, json_object* dst) {
  const double srcValue = json_object_get_double(src);
  const double dstValue = json_object_get_double(dst);
  HEARTH_LOG(LOG_DEBUG, "%s: srcVal= %f dstVal= %f\n", kOperation, srcValue, dstValue);
  return srcValue == dstValue ? 1 : 0;
}

int sameString(json_object* src, json_object* dst) {
  const char* const srcValue = json_object_get_string(src);
  const char* const dstValue = json_object_get_string(dst);
  // The caller states the types: a null pointer passed as a string has no text.
  if (srcValue == nullptr || dstValue == nullptr) {
    return 0;
  }
  HEARTH_LOG(LOG_DEBUG, "%s: srcVal= %s dstVal= %s\n", kOperation, srcValue, dstValue);
  return std::strcmp(srcValue, dstValue) == 0 ? 1 : 0;
}

}  // namespace
}  // namespace hearth

int JsonData::compareObjVal(json_object* src, json_type srcType, json_object* dst,
                            json_type dstType) {
  if (srcType != dstType || dstType == json_type_null) {
    HEARTH_LOG(LOG_DEBUG, "JSON type is different\n");
    return 0;
  }
  switch (dstType) {
    case json_type_boolean:
    case json_type_int:
      return hearth::sameInt(src, dst);
    case json_type_double:
      return hearth::sameDouble(src, dst);
    case json_type_string:
      return hearth::sameString(src, dst);
    default:
      HEARTH_LOG(LOG_WARNING, "JSON type for the comparison MUST be primary types\n");
      return 1;
  }
}
