// Most values are copied node by node, which gives what rendering and parsing would at a fraction
// of the cost. A value whose text cannot be told from its type takes the long way as a whole: one
// with user data, which may come with a serializer of its own, and a number with an unusual text.
#include "json/document/deep_copy.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>
#include <utility>

#include "json/depth.h"
#include "json/render.h"

namespace hearth {
namespace {

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

// json-c reads a larger number as the largest signed one.
json_object* copyInteger(json_object* value) {
  constexpr int64_t kLargest = std::numeric_limits<int64_t>::max();
  const int64_t number = json_object_get_int64(value);
  const uint64_t larger = number == kLargest ? json_object_get_uint64(value) : 0;
  return larger > uint64_t{kLargest} ? json_object_new_uint64(larger)
                                     : json_object_new_int64(number);
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

// One copy, node by node. `levels` is how many containers may still be nested.
class NodeCopy {
 public:
  // True with a null copy for JSON null.
  [[nodiscard]] bool make(json_object* value, int levels, JsonRef& copy);

  // True after a copy that failed only because a value's text cannot be told from its type.
  bool needsText() const { return needsText_; }

 private:
  [[nodiscard]] bool makeMembers(json_object* object, int levels, json_object* copy);
  [[nodiscard]] bool makeElements(json_object* array, int levels, json_object* copy);
  json_object* makeDouble(json_object* value);

  bool needsText_ = false;
};

bool NodeCopy::makeMembers(json_object* object, int levels, json_object* copy) {
  json_object_object_foreach(object, name, member) {
    JsonRef child;
    if (levels == 0 || !make(member, levels - 1, child) ||
        json_object_object_add_ex(copy, name, child.get(), JSON_C_OBJECT_ADD_KEY_IS_NEW) != 0) {
      return false;
    }
    static_cast<void>(child.release());
  }
  return true;
}

bool NodeCopy::makeElements(json_object* array, int levels, json_object* copy) {
  const size_t length = json_object_array_length(array);
  for (size_t i = 0; i < length; ++i) {
    JsonRef child;
    if (levels == 0 || !make(json_object_array_get_idx(array, i), levels - 1, child) ||
        json_object_array_add(copy, child.get()) != 0) {
      return false;
    }
    static_cast<void>(child.release());
  }
  return true;
}

// A number with a fraction keeps the text that it was read from, or is given one by the backend's
// chosen format or serializer: only the text itself says what reading it again gives.
json_object* NodeCopy::makeDouble(json_object* value) {
  const char* const text = render(value, JSON_C_TO_STRING_SPACED);
  double number = 0;
  if (text != nullptr && isPlainFraction(text) &&
      std::from_chars(text, text + std::strlen(text), number).ec == std::errc()) {
    return json_object_new_double_s(number, text);
  }
  needsText_ = true;
  return nullptr;
}

bool NodeCopy::make(json_object* value, int levels, JsonRef& copy) {
  const json_type type = json_object_get_type(value);
  if (type == json_type_null) {
    return true;
  }
  if (type == json_type_double) {
    copy.reset(makeDouble(value));
    return copy != nullptr;
  }
  if (json_object_get_userdata(value) != nullptr) {
    needsText_ = true;
    return false;
  }
  switch (type) {
    case json_type_object:
      copy.reset(json_object_new_object());
      return copy != nullptr && makeMembers(value, levels, copy.get());
    case json_type_array:
      copy.reset(newArrayFor(value));
      return copy != nullptr && makeElements(value, levels, copy.get());
    case json_type_boolean:
      copy.reset(json_object_new_boolean(json_object_get_boolean(value)));
      break;
    case json_type_int:
      copy.reset(copyInteger(value));
      break;
    default:
      copy.reset(copyString(value));
      break;
  }
  return copy != nullptr;
}

DeepCopy copyByText(json_object* value) {
  const char* const text = renderShallow(value, JSON_C_TO_STRING_SPACED);
  if (text == nullptr || text[0] == '\0') {
    return {nullptr, false};
  }
  return {JsonRef(json_tokener_parse(text)), true};
}

}  // namespace

DeepCopy deepCopy(json_object* value) {
  NodeCopy nodes;
  DeepCopy copy = {nullptr, true};
  if (!nodes.make(value, kParserNesting, copy.value)) {
    copy.value.reset();
  }
  return nodes.needsText() ? copyByText(value) : std::move(copy);
}

}  // namespace hearth
