// json-c could print the document as a whole, but not in colours and not with escapes for what
// drives a terminal. So this walk writes brackets, commas and line breaks itself, and leaves to
// json-c only the scalars and names.
#include "tools/terminal/json_text.h"

#include "base/json_ref.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// Null and the booleans are words.
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

// Appends a value to its text, level by level.
class JsonWriter {
 public:
  JsonWriter(const Output& out, Layout layout) : out_(out), layout_(layout) {}

  void write(json_object* value, int level);
  std::string text;  // the result

 private:
  void writeObject(json_object* object, int level);
  void writeArray(json_object* array, int level);
  void breakLine(int level);
  std::string scalar(json_object* value) const;

  const Output& out_;
  const Layout layout_;
};

void JsonWriter::write(json_object* value, int level) {
  // A null value is JSON's null, for json-c has no object for it.
  const json_type type = json_object_get_type(value);
  if (type == json_type_object) {
    writeObject(value, level);
  } else if (type == json_type_array) {
    writeArray(value, level);
  } else {
    text += out_.inked(inkOf(type), scalar(value));
  }
}

void JsonWriter::writeObject(json_object* object, int level) {
  const char* before = "{";  // still there behind the loop: the object is empty
  json_object_object_foreach(object, name, member) {
    text += before;
    before = ",";
    breakLine(level + 1);
    const JsonRef key(json_object_new_string(name));
    text += out_.inked(Ink::kKey, scalar(key.get())) + (layout_ == Layout::kIndented ? ": " : ":");
    write(member, level + 1);
  }
  if (*before == '{') {
    text += "{}";
    return;
  }
  breakLine(level);
  text += "}";
}

void JsonWriter::writeArray(json_object* array, int level) {
  const std::size_t length = json_object_array_length(array);
  if (length == 0) {
    text += "[]";
    return;
  }
  for (std::size_t i = 0; i < length; ++i) {
    // Each element brings what stands before it: the bracket or a comma.
    text += i == 0 ? "[" : ",";
    breakLine(level + 1);
    write(json_object_array_get_idx(array, i), level + 1);
  }
  breakLine(level);
  text += "]";
}

// Two blanks for each level; nothing at all where the document goes on one line.
void JsonWriter::breakLine(int level) {
  if (layout_ == Layout::kIndented) {
    text.append("\n").append(static_cast<std::size_t>(level) * 2, ' ');
  }
}

// A byte that is no UTF-8 cannot be escaped in JSON. Programs get it as it is; for people on a
// terminal Output::foreign makes it visible.
std::string JsonWriter::scalar(json_object* value) const {
  std::size_t size = 0;
  const char* const json =
      json_object_to_json_string_length(value, JSON_C_TO_STRING_NOSLASHESCAPE, &size);
  return out_.foreign(escaped({json, json == nullptr ? 0 : size}, Escapes::kJson));
}

}  // namespace

std::string jsonText(json_object* value, const Output& out, Layout layout) {
  JsonWriter writer(out, layout);
  writer.write(value, 0);
  return writer.text;
}

const char* typeName(json_object* value) {
  // In the order of json_type.
  constexpr const char* kNames[] = {"null",      "a boolean", "a double", "an integer",
                                    "an object", "an array",  "a string"};
  return kNames[json_object_get_type(value)];
}

// Scalars have no extent.
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
