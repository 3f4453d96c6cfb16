#include "json/deep_copy.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#include "json/nesting.h"
#include "json/render.h"

namespace hearth {
namespace {

[[nodiscard]] bool copyValue(json_object* value, int levels, JsonRef& copy);

[[nodiscard]] bool copyMembers(json_object* object, int levels, json_object* copy) {
  json_object_object_foreach(object, name, member) {
    JsonRef child;
    if (levels == 0 || !copyValue(member, levels - 1, child) ||
        json_object_object_add_ex(copy, name, child.get(), JSON_C_OBJECT_ADD_KEY_IS_NEW) != 0) {
      return false;
    }
    static_cast<void>(child.release());
  }
  return true;
}

[[nodiscard]] bool copyElements(json_object* array, int levels, json_object* copy) {
  const size_t length = json_object_array_length(array);
  for (size_t i = 0; i < length; ++i) {
    JsonRef child;
    if (levels == 0 || !copyValue(json_object_array_get_idx(array, i), levels - 1, child) ||
        json_object_array_add(copy, child.get()) != 0) {
      return false;
    }
    static_cast<void>(child.release());
  }
  return true;
}

json_object* copyInteger(json_object* value) {
  constexpr auto kLargestSigned = uint64_t{std::numeric_limits<int64_t>::max()};
  const uint64_t unsignedValue = json_object_get_uint64(value);
  return unsignedValue > kLargestSigned ? json_object_new_uint64(unsignedValue)
                                        : json_object_new_int64(json_object_get_int64(value));
}

// "17.5", "-0.25": what the parser takes for a number with a fraction, whatever it makes of others.
bool isPlainFraction(const char* text) {
  constexpr char kDigits[] = "0123456789";
  const char* const whole = text[0] == '-' ? text + 1 : text;
  const char* const point = whole + std::strspn(whole, kDigits);
  const bool isWhole = point == whole + 1 || (point != whole && whole[0] != '0');
  if (!isWhole || *point != '.') {
    return false;
  }
  const char* const fraction = point + 1;
  const char* const end = fraction + std::strspn(fraction, kDigits);
  return end != fraction && *end == '\0';
}

// A number with a fraction keeps the text that it was read from, or is given one by the backend's
// chosen format: only the text itself says what reading it again gives. A parser is made for the
// unusual ones alone.
json_object* copyDouble(json_object* value) {
  const char* const text = render(value, JSON_C_TO_STRING_SPACED);
  if (text == nullptr) {
    return nullptr;
  }
  double number = 0;
  const bool isRead = isPlainFraction(text) &&
                      std::from_chars(text, text + std::strlen(text), number).ec == std::errc();
  return isRead ? json_object_new_double_s(number, text) : json_tokener_parse(text);
}

json_object* copyString(json_object* value) {
  return json_object_new_string_len(json_object_get_string(value),
                                    json_object_get_string_len(value));
}

// An empty array with room for the elements of another.
json_object* newArrayFor(json_object* array) {
  const size_t length = std::clamp(json_object_array_length(array), size_t{1}, size_t{INT_MAX});
  return json_object_new_array_ext(static_cast<int>(length));
}

// True with a null copy for JSON null. `levels` is how many containers may still be nested.
bool copyValue(json_object* value, int levels, JsonRef& copy) {
  switch (json_object_get_type(value)) {
    case json_type_null:
      return true;
    case json_type_object:
      copy.reset(json_object_new_object());
      return copy != nullptr && copyMembers(value, levels, copy.get());
    case json_type_array:
      copy.reset(newArrayFor(value));
      return copy != nullptr && copyElements(value, levels, copy.get());
    case json_type_boolean:
      copy.reset(json_object_new_boolean(json_object_get_boolean(value)));
      break;
    case json_type_int:
      copy.reset(copyInteger(value));
      break;
    case json_type_double:
      copy.reset(copyDouble(value));
      break;
    case json_type_string:
      copy.reset(copyString(value));
      break;
  }
  return copy != nullptr;
}

}  // namespace

JsonRef deepCopy(json_object* value) {
  JsonRef copy;
  if (!copyValue(value, kParserNesting, copy)) {
    copy.reset();
  }
  return copy;
}

}  // namespace hearth
