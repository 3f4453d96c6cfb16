#include "tools/terminal/json_text.h"

#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

Ink inkOf(json_type type) {
  switch (type) {
    case json_type_string:
      return Ink::kText;
    case json_type_int:
    case json_type_double:
      return Ink::kNumber;
    default:
      return Ink::kWord;
  }
}

class Writer {
 public:
  Writer(const Output& out, Layout layout) : out_(out), layout_(layout) {}

  void write(json_object* value, int level);
  std::string text;

 private:
  void writeObject(json_object* object, int level);
  void writeArray(json_object* array, int level);
  void breakLine(int level);
  std::string scalar(json_object* value) const;

  const Output& out_;
  const Layout layout_;
};

void Writer::write(json_object* value, int level) {
  const json_type type = json_object_get_type(value);
  if (type == json_type_object) {
    writeObject(value, level);
  } else if (type == json_type_array) {
    writeArray(value, level);
  } else {
    text += out_.inked(inkOf(type), scalar(value));
  }
}

void Writer::writeObject(json_object* object, int level) {
  const char* before = "{";
  json_object_object_foreach(object, name, member) {
    text += before;
    before = ",";
    breakLine(level + 1);
    json_object* const key = json_object_new_string(name);
    text += out_.inked(Ink::kKey, scalar(key)) + (layout_ == Layout::kIndented ? ": " : ":");
    json_object_put(key);
    write(member, level + 1);
  }
  if (*before == '{') {
    text += "{}";
    return;
  }
  breakLine(level);
  text += "}";
}

void Writer::writeArray(json_object* array, int level) {
  const std::size_t length = json_object_array_length(array);
  if (length == 0) {
    text += "[]";
    return;
  }
  for (std::size_t i = 0; i < length; ++i) {
    text += i == 0 ? "[" : ",";
    breakLine(level + 1);
    write(json_object_array_get_idx(array, i), level + 1);
  }
  breakLine(level);
  text += "]";
}

void Writer::breakLine(int level) {
  if (layout_ == Layout::kIndented) {
    text.append("\n").append(static_cast<std::size_t>(level) * 2, ' ');
  }
}

// A byte that is no UTF-8 cannot be written in JSON: programs get it as it is, people see it.
std::string Writer::scalar(json_object* value) const {
  std::size_t size = 0;
  const char* const json =
      json_object_to_json_string_length(value, JSON_C_TO_STRING_NOSLASHESCAPE, &size);
  return out_.foreign(escaped({json, json == nullptr ? 0 : size}, Escapes::kJson));
}

}  // namespace

std::string jsonText(json_object* value, const Output& out, Layout layout) {
  Writer writer(out, layout);
  writer.write(value, 0);
  return writer.text;
}

const char* typeName(json_object* value) {
  // In the order of json_type.
  constexpr const char* kNames[] = {"null",      "a boolean", "a double", "an integer",
                                    "an object", "an array",  "a string"};
  return kNames[json_object_get_type(value)];
}

std::string described(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_object:
      return "an object of " +
             counted(static_cast<std::size_t>(json_object_object_length(value)), "member");
    case json_type_array:
      return "an array of " + counted(json_object_array_length(value), "element");
    default:
      return typeName(value);
  }
}

}  // namespace hearth::tool
