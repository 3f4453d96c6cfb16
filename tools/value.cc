#include "tools/value.h"

#include "base/utf8.h"
#include "tools/failure.h"
#include "tools/json_text.h"
#include "tools/text.h"

namespace hearth::tool {
namespace {

// The types that a value can be told to have.
struct NamedType {
  ValueOptions::Type type;
  const char* option;
  const char* help;
  const char* name;
};
constexpr NamedType kTypes[] = {
    {ValueOptions::kString, "--string", "VALUE is a text, whatever it looks like", "a string"},
    {ValueOptions::kInt, "--int", "VALUE is an integer", "an integer"},
    {ValueOptions::kDouble, "--double", "VALUE is a floating-point number", "a double"},
    {ValueOptions::kBool, "--bool", "VALUE is true or false", "a boolean"},
    {ValueOptions::kJson, "--json", "VALUE is JSON: null, {...}, [...], \"...\"", "JSON"},
};

const char* nameOf(ValueOptions::Type type) {
  for (const NamedType& row : kTypes) {
    if (row.type == type) {
      return row.name;
    }
  }
  return "a value";
}

ValueOptions::Type typeOf(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_string:
      return ValueOptions::kString;
    case json_type_int:
      return ValueOptions::kInt;
    case json_type_double:
      return ValueOptions::kDouble;
    case json_type_boolean:
      return ValueOptions::kBool;
    default:
      return ValueOptions::kJson;
  }
}

// Plain JSON that is null, a boolean or a number which the parser keeps as it is written.
bool isScalarText(const std::string& text) {
  if (text == "null" || text == "true" || text == "false") {
    return true;
  }
  if (text.find_first_not_of("0123456789+-.eE") != std::string::npos || !looseness(text).empty()) {
    return false;
  }
  const Handle value = parse(text, text);
  return json_object_is_type(value->jobj, json_type_double) != 0 ||
         text == json_object_to_json_string(value->jobj);
}

Handle newString(const std::string& text) {
  return std::make_unique<TreeMapObject>(
      json_object_new_string_len(text.data(), static_cast<int>(text.size())));
}

Handle inferred(const std::string& text) {
  if (isScalarText(text)) {
    return parse(text, text, true);
  }
  return newString(text);
}

[[noreturn]] void failOnType(const std::string& text, const std::string& why) {
  throw Failure(Exit::kUsage, "value " + inQuotes(text) + " " + why);
}

Handle ofType(const std::string& text, ValueOptions::Type type) {
  if (type == ValueOptions::kString) {
    return newString(text);
  }
  if (type == ValueOptions::kJson) {
    const std::string loose = looseness(text);
    if (!loose.empty()) {
      failOnType(text, "is not JSON: " + loose);
    }
    return parse(text, text, true);
  }
  Handle value = inferred(text);
  if (type == ValueOptions::kDouble && json_object_is_type(value->jobj, json_type_int) != 0) {
    return std::make_unique<TreeMapObject>(
        json_object_new_double_s(std::stod(text), (text + ".0").c_str()));
  }
  if (typeOf(value->jobj) != type) {
    failOnType(text, std::string("is not ") + nameOf(type));
  }
  return value;
}

Handle replacing(json_object* old, const std::string& text) {
  const ValueOptions::Type type = typeOf(old);
  const std::string present = "would replace " + described(old) + "; ";
  if (type == ValueOptions::kJson) {
    failOnType(text, present + "say --json, or which type it is, to do so");
  }
  try {
    return ofType(text, type);
  } catch (const Failure&) {
    failOnType(text, present + "say which type it is (--string, --int, ...) to do so");
  }
}

Handle valueIn(const std::string& file) {
  const std::string text = readWhole(file);
  Handle value = parse(text, file, true);
  const std::string loose = looseness(text);
  if (!loose.empty()) {
    throw Failure(Exit::kIo, inQuotes(file) + ": is not plain JSON: " + loose);
  }
  return value;
}

}  // namespace

void addValueOptions(CLI::App& command, ValueOptions& options, ValueUse use) {
  CLI::Option* const value = command.add_option("VALUE", options.text, "the value");
  value->option_text(" ");
  constexpr char kGroup[] = "The type of VALUE";
  std::vector<CLI::Option*> types;
  for (const NamedType& row : kTypes) {
    if (row.type != ValueOptions::kJson || use == ValueUse::kStored) {
      types.push_back(command.add_flag_callback(
          row.option, [&options, type = row.type] { options.type = type; }, row.help));
      types.back()->option_text(" ");
    }
  }
  value->required(use == ValueUse::kSought);
  if (use == ValueUse::kStored) {
    types.push_back(
        command
            .add_option("--from", options.from, "VALUE is the JSON in FILE, - for standard input")
            ->type_name("FILE")
            ->option_text("FILE")
            ->excludes(value));
  }
  for (CLI::Option* const type : types) {
    type->group(kGroup);
    for (CLI::Option* const other : types) {
      if (other != type) {
        type->excludes(other);
      }
    }
  }
}

Value::Value(const ValueOptions& options) : options_(options) {
  if (!options.from.empty()) {
    read_ = valueIn(options.from);
  } else if (!options.text) {
    throw Failure(Exit::kUsage, "VALUE is missing (put -- before one that begins with -)");
  } else if (!isUtf8(*options.text)) {
    failOnType(*options.text, "is not UTF-8; texts in JSON are");
  }
}

Handle Value::make(json_object* replaced) const {
  if (read_ != nullptr) {
    return std::make_unique<TreeMapObject>(json_object_get(read_->jobj));
  }
  if (options_.type != ValueOptions::kInferred) {
    return ofType(*options_.text, options_.type);
  }
  if (replaced != nullptr) {
    return replacing(replaced, *options_.text);
  }
  return inferred(*options_.text);
}

}  // namespace hearth::tool
