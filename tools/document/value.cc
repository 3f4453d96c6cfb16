// The type of a value is decided by the first of these that applies:
//   --from FILE          the file is JSON, and so has types
//   --string, --int ...  the user says it
//   a value is replaced  its type stays
//   otherwise            what the text looks like: a number, a word of JSON, or else a text
// A text that does not fit its type is refused, never stored as something else.
#include "tools/document/value.h"

#include "base/utf8.h"
#include "hearth/kit/secrets.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/prompt.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// A type that an option gives to a value, and what messages call it.
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

// The type in messages, with its article.
const char* nameOf(ValueOptions::Type type) {
  for (const NamedType& row : kTypes) {
    if (row.type == type) {
      return row.name;
    }
  }
  return "a value";
}

// The type that an option would give to this value. Null, objects and arrays are kJson.
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

// True for null, a boolean or a number that is kept as it is written. Others, such as an integer
// that 64 bits do not hold, 1e400 and -0, stay texts.
bool isScalarText(const std::string& text) {
  return text == "null" || text == "true" || text == "false" ||
         (text.find_first_not_of("0123456789+-.eE") == std::string::npos &&
          whyNotPlainJson(text).empty());
}

Handle newString(const std::string& text) {
  return std::make_unique<TreeMapObject>(
      json_object_new_string_len(text.data(), static_cast<int>(text.size())));
}

// The value that the text looks like.
Handle makeInferred(const std::string& text) {
  if (isScalarText(text)) {
    return parse(text, text, true);
  }
  return newString(text);
}

[[noreturn]] void failOnType(const std::string& shown, const std::string& why) {
  throw Failure(Exit::kUsage, "value " + shown + " " + why);
}

// The value of exactly this type. Throws a Failure when the text, which messages call `shown`,
// cannot be that.
Handle makeOfType(const std::string& text, const std::string& shown, ValueOptions::Type type) {
  if (type == ValueOptions::kString) {
    return newString(text);
  }
  if (type == ValueOptions::kJson) {
    const std::string whyNot = whyNotPlainJson(text);
    if (!whyNot.empty()) {
      failOnType(shown, "is not JSON: " + whyNot);
    }
    return parse(text, text, true);
  }
  Handle value = makeInferred(text);
  // A double may be written as an integer; it is kept and saved as "5.0", so that it stays a
  // double.
  if (type == ValueOptions::kDouble && json_object_is_type(value->jobj, json_type_int) != 0) {
    return std::make_unique<TreeMapObject>(
        json_object_new_double_s(std::stod(text), (text + ".0").c_str()));
  }
  if (typeOf(value->jobj) != type) {
    failOnType(shown, std::string("is not ") + nameOf(type));
  }
  return value;
}

// The value with the type of the one that it replaces. Changing a type, or replacing an object or
// an array by a scalar, takes an option, for it is more often a mistake.
Handle makeInPlaceOf(json_object* old, const std::string& text, const std::string& shown) {
  const ValueOptions::Type type = typeOf(old);
  const std::string present = "would replace " + described(old) + "; ";
  if (type == ValueOptions::kJson) {
    failOnType(shown, present + "say --json, or which type it is, to do so");
  }
  try {
    return makeOfType(text, shown, type);
  } catch (const Failure&) {
    failOnType(shown, present + "say which type it is (--string, --int, ...) to do so");
  }
}

// The value in the file of --from. It may be JSON's null, but nothing of the text may be lost.
Handle readValue(const std::string& file) {
  const std::string text = readWhole(file);
  Handle value = parse(text, file, true);
  const std::string whyNot = whyNotPlainJson(text);
  if (!whyNot.empty()) {
    throw Failure(Exit::kIo, inQuotes(file) + ": is not plain JSON: " + whyNot);
  }
  return value;
}

}  // namespace

// VALUE stays optional where --from may stand for it; GivenValue tells when both are missing.
void addValueOptions(CLI::App& command, ValueOptions& options, ValueUse use) {
  CLI::Option* const value = command.add_option("VALUE", options.text, "the value");
  value->option_text(" ");
  std::vector<CLI::Option*> types;
  for (const NamedType& row : kTypes) {
    if (row.type != ValueOptions::kJson || use == ValueUse::kStored) {
      types.push_back(command.add_flag_callback(
          row.option, [&options, type = row.type] { options.type = type; }, row.help));
      types.back()->option_text(" ");
    }
  }
  if (use == ValueUse::kStored) {
    CLI::Option* const secret = command.add_flag(
        "--secret", options.isSecret,
        "VALUE comes from a prompt without echo, or as it is from standard input; a text");
    secret->group(kTypeGroup)->excludes(value);
    types.push_back(
        command
            .add_option("--from", options.from, "VALUE is the JSON in FILE, - for standard input")
            ->type_name("FILE")
            ->option_text("FILE")
            ->excludes(value)
            ->excludes(secret));
  }
  // At most one of them on a command line.
  for (CLI::Option* const type : types) {
    type->group(kTypeGroup);
    for (CLI::Option* const other : types) {
      if (other != type) {
        type->excludes(other);
      }
    }
  }
}

// Reading comes first, before any lock is taken: standard input may take its time.
GivenValue::GivenValue(const ValueOptions& options)
    : type_(options.type), isHidden_(options.isSecret) {
  if (!options.from.empty()) {
    read_ = readValue(options.from);
    return;
  }
  if (options.isSecret) {
    text_ = readSecret();
  } else if (options.text.has_value()) {
    text_ = *options.text;
  } else {
    throw Failure(Exit::kUsage, "VALUE is missing (put -- before one that begins with -)");
  }
  if (!isUtf8(text_)) {
    failOnType(shown(), "is not UTF-8; texts in JSON are");
  }
}

std::string GivenValue::shown() const {
  return isHidden_ ? kSecretShown : inQuotes(text_);
}

Handle GivenValue::make(json_object* replaced) const {
  if (read_ != nullptr) {
    return std::make_unique<TreeMapObject>(json_object_get(read_->jobj));
  }
  if (type_ != ValueOptions::kInferred) {
    return makeOfType(text_, shown(), type_);
  }
  if (replaced != nullptr) {
    return makeInPlaceOf(replaced, text_, shown());
  }
  if (isHidden_) {
    return newString(text_);
  }
  return makeInferred(text_);
}

}  // namespace hearth::tool
