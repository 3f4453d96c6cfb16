// A copy is made in one of two ways, which give the same.
//
// The short way copies node by node, at a fraction of the cost. It needs values whose text follows
// from their type. Two kinds are not such: a value with user data, which may come with a serializer
// of its own, and a number with a fraction whose text is unusual. When the short way meets one, the
// whole value takes the long way: it is rendered, and the text is parsed. Either way ends at as
// many levels as the parser reads.
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

// True for a text such as "17.5" or "-0.25", which the parser surely reads as a number with a
// fraction. A text that is refused here may still be one, so it takes the long way.
bool isPlainFraction(const char* text) {
  constexpr char kDigits[] = "0123456789";
  const char* const whole = text[0] == '-' ? text + 1 : text;
  const char* const point = whole + std::strspn(whole, kDigits);
  // One digit, or several that do not begin with 0.
  const bool isWhole = point == whole + 1 || (point != whole && whole[0] != '0');
  if (!isWhole || *point != '.') {
    return false;
  }
  const char* const fraction = point + 1;
  const char* const end = fraction + std::strspn(fraction, kDigits);
  return end != fraction && *end == '\0';
}

// Reads a plain fraction, whatever locale the backend has set. False where the C++ library cannot
// (libc++ reads whole numbers only): the value then takes the long way.
bool readFraction(const char* text, double& number) {
#ifdef __cpp_lib_to_chars
  return std::from_chars(text, text + std::strlen(text), number).ec == std::errc();
#else
  static_cast<void>(text);
  static_cast<void>(number);
  return false;
#endif
}

// json-c answers the largest signed number for every one above it. So only when it answers that one
// is the number asked for as an unsigned one.
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

// An empty array with room for the elements of another. json-c wants room for at least one.
json_object* newArrayFor(json_object* array) {
  const std::size_t length =
      std::clamp(json_object_array_length(array), std::size_t{1}, std::size_t{INT_MAX});
  return json_object_new_array_ext(static_cast<int>(length));
}

// One copy by the short way. `levels` says how many more containers may be nested.
class NodeCopy {
 public:
  // Copies one value with all inside. True with a null copy for JSON null.
  [[nodiscard]] bool make(json_object* value, int levels, JsonRef& copy);

  // True after a copy that failed only because a value's text does not follow from its type.
  bool needsText() const { return needsText_; }

 private:
  [[nodiscard]] bool makeMembers(json_object* object, int levels, json_object* copy);
  [[nodiscard]] bool makeElements(json_object* array, int levels, json_object* copy);
  json_object* makeDouble(json_object* value);

  bool needsText_ = false;
};

// A child stands one level deeper, so with no level left even a scalar is too deep. The container
// takes over the reference on each child that it was given.
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
  const std::size_t length = json_object_array_length(array);
  for (std::size_t i = 0; i < length; ++i) {
    JsonRef child;
    if (levels == 0 || !make(json_object_array_get_idx(array, i), levels - 1, child) ||
        json_object_array_add(copy, child.get()) != 0) {
      return false;
    }
    static_cast<void>(child.release());
  }
  return true;
}

// The text of a number with a fraction is the one that it was read from, or comes from the
// backend's format or a serializer. Only the text itself says what reading it again gives, so the
// number is rendered, and the copy keeps the text.
json_object* NodeCopy::makeDouble(json_object* value) {
  const char* const text = render(value, JSON_C_TO_STRING_SPACED);
  double number = 0;
  if (text != nullptr && isPlainFraction(text) && readFraction(text, number)) {
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
  // json-c keeps the text of a number with a fraction as its user data, so those come before.
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

// The long way.
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
