#include "schema/describe.h"

#include <json-c/json.h>

#include <charconv>
#include <cstring>

#include "schema/assertions.h"
#include "schema/equality.h"
#include "schema/number.h"
#include "schema/text.h"

namespace hearth {
namespace schema {
namespace {

constexpr size_t kLongestShown = 60;

// The article belongs to the name.
const char* typeNamed(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_boolean:
      return "a boolean";
    case json_type_double:
      return "a number";
    case json_type_int:
      return "an integer";
    case json_type_object:
      return "an object";
    case json_type_array:
      return "an array";
    case json_type_string:
      return "a string";
    default:
      return "null";
  }
}

std::string quoted(const char* text) {
  return std::string("\"") + text + '"';
}

std::string counted(size_t count, const char* noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

// The elements of a list, the last ones as "...".
std::string listed(json_object* values) {
  constexpr size_t kMost = 8;
  const size_t count = json_object_array_length(values);
  std::string out;
  for (size_t i = 0; i < count && i < kMost; ++i) {
    out += (i ? ", " : "") + shown(json_object_array_get_idx(values, i));
  }
  return count > kMost ? out + ", ..." : out;
}

std::string shownNumber(const Number& number) {
  if (!number.isDouble) {
    return (number.negative ? "-" : "") + std::to_string(number.magnitude);
  }
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, number.real).ptr};
}

// The start of a text, never ending inside a character; nothing in it moves a terminal's cursor.
std::string shownText(std::string_view text) {
  const bool cut = text.size() > kLongestShown;
  size_t end = cut ? kLongestShown : text.size();
  while (cut && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  std::string out(text.substr(0, end));
  for (char& c : out) {
    c = static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? ' ' : c;
  }
  return '"' + out + (cut ? "...\"" : "\"");
}

std::string describeType(json_object* instance, json_object* types) {
  std::string out = "must be ";
  if (json_object_get_type(types) == json_type_array) {
    out += "one of the types " + listed(types);
  } else {
    const std::string name = json_object_get_string(types);
    const bool vowel = name == "object" || name == "array" || name == "integer";
    out += (name == "null" ? "" : vowel ? "an " : "a ") + name;
  }
  return out + ", but is " + typeNamed(instance);
}

std::string describeBound(json_object* instance, const char* words, json_object* bound) {
  return std::string("must be ") + words + ' ' + shown(bound) + ", but is " + shown(instance);
}

std::string describeSize(const char* verb, const char* words, json_object* bound, const char* noun,
                         size_t size) {
  uint64_t count = 0;
  const std::string end = isCount(bound, &count) && count == 1 ? noun : std::string(noun) + 's';
  return std::string(verb) + ' ' + words + ' ' + shown(bound) + ' ' + end + ", but has " +
         std::to_string(size);
}

std::string describeLength(json_object* instance, const char* words, json_object* bound) {
  return std::string("must be ") + words + ' ' + shown(bound) + " characters long, but has " +
         std::to_string(lengthOf(textOf(instance)));
}

std::string describeEqual(json_object* instance) {
  Effort effort;
  const EqualPair pair = findEqualElements(instance, effort);
  return "must not hold equal elements, but elements " + std::to_string(pair.first) + " and " +
         std::to_string(pair.second) + " are equal";
}

// The first of these names that the instance lacks.
const char* missingName(json_object* instance, json_object* names) {
  for (size_t i = 0; i < json_object_array_length(names); ++i) {
    const char* const name = json_object_get_string(json_object_array_get_idx(names, i));
    if (!json_object_object_get_ex(instance, name, nullptr)) {
      return name;
    }
  }
  return nullptr;
}

std::string describeDependents(json_object* instance, json_object* dependents) {
  json_object_object_foreach(dependents, name, names) {
    if (json_object_get_type(names) == json_type_array &&
        json_object_object_get_ex(instance, name, nullptr)) {
      const char* const missing = missingName(instance, names);
      if (missing) {
        return "must have the member " + quoted(missing) + ", because it has " + quoted(name);
      }
    }
  }
  return "lacks a member that another one needs";
}

// In `dependencies` the value at fault is the list of names.
std::string describeDependency(json_object* instance, json_object* value) {
  if (json_object_get_type(value) != json_type_array) {
    return describeDependents(instance, value);
  }
  const char* const missing = missingName(instance, value);
  return "must have the member " + quoted(missing ? missing : "") +
         ", because another member needs it";
}

}  // namespace

// json-c's own rendering would write into the value, which others may be reading.
std::string shown(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_null:
      return "null";
    case json_type_boolean:
      return json_object_get_boolean(value) ? "true" : "false";
    case json_type_int:
    case json_type_double:
      return shownNumber(numberOf(value));
    case json_type_array:
      return "an array of " + counted(json_object_array_length(value), "element");
    case json_type_object:
      return "an object of " +
             counted(static_cast<size_t>(json_object_object_length(value)), "member");
    default:
      return shownText(textOf(value));
  }
}

std::string describeFailure(json_object* instance, Id keyword, json_object* value,
                            json_object* schema, Draft draft) {
  switch (keyword) {
    case Id::kType:
      return describeType(instance, value);
    case Id::kEnum:
      return "must be one of " + listed(value) + ", but is " + shown(instance);
    case Id::kConst:
      return "must be " + shown(value) + ", but is " + shown(instance);
    case Id::kMultipleOf:
      return describeBound(instance, "a multiple of", value);
    case Id::kMaximum:
      return describeBound(instance,
                           isExclusive(schema, "exclusiveMaximum", draft) ? "less than" : "at most",
                           value);
    case Id::kMinimum:
      return describeBound(
          instance, isExclusive(schema, "exclusiveMinimum", draft) ? "more than" : "at least",
          value);
    case Id::kExclusiveMaximum:
      return describeBound(instance, "less than", value);
    case Id::kExclusiveMinimum:
      return describeBound(instance, "more than", value);
    case Id::kMaxLength:
      return describeLength(instance, "at most", value);
    case Id::kMinLength:
      return describeLength(instance, "at least", value);
    case Id::kPattern:
      return "must match the pattern " + shown(value) + ", but is " + shown(instance);
    case Id::kFormat:
      return "must be a valid " + std::string(textOf(value)) + ", but is " + shown(instance);
    case Id::kContentEncoding:
      return "must be encoded as " + std::string(textOf(value));
    case Id::kContentMediaType:
      return "must hold a document of type " + std::string(textOf(value));
    case Id::kMaxItems:
      return describeSize("must have", "at most", value, "element",
                          json_object_array_length(instance));
    case Id::kMinItems:
      return describeSize("must have", "at least", value, "element",
                          json_object_array_length(instance));
    case Id::kMaxProperties:
      return describeSize("must have", "at most", value, "member",
                          static_cast<size_t>(json_object_object_length(instance)));
    case Id::kMinProperties:
      return describeSize("must have", "at least", value, "member",
                          static_cast<size_t>(json_object_object_length(instance)));
    case Id::kUniqueItems:
      return describeEqual(instance);
    case Id::kRequired: {
      const char* const missing = missingName(instance, value);
      return "must have the member " + quoted(missing ? missing : "");
    }
    case Id::kDependentRequired:
    case Id::kDependencies:
      return describeDependency(instance, value);
    case Id::kNot:
      return "must not match the schema of \"not\"";
    case Id::kOneOf:
      return "must match exactly one of the alternatives, but matches more";
    default:
      return "does not satisfy " + quoted(nameOf(keyword));
  }
}

std::string describeTrouble(Trouble trouble, Id keyword, json_object* value) {
  const std::string named = quoted(nameOf(keyword));
  switch (trouble) {
    case Trouble::kTooDeep:
      return "cannot be checked: schema or value are nested too deeply";
    case Trouble::kEndless:
      return "cannot be checked: a reference in the schema leads back to itself";
    case Trouble::kTooMuchWork:
      return "cannot be checked: it takes too much work";
    case Trouble::kNoMemory:
      return "cannot be checked: memory ran out";
    case Trouble::kBadSchema:
      return "cannot be checked: the schema here is " + std::string(typeNamed(value)) +
             ", not an object or a boolean";
    case Trouble::kBadValue:
      return "cannot be checked: " + named + " cannot have the value " + shown(value);
    case Trouble::kLongIdentifier:
      return "cannot be checked: an identifier in the schema is too long";
    case Trouble::kUnresolved:
      return "cannot be checked: the reference " + shown(value) + " leads nowhere";
    case Trouble::kBadPattern:
      return "cannot be checked: a pattern of " + named + " is no usable regular expression";
    case Trouble::kPatternLimit:
      return "cannot be checked: a pattern of " + named + " takes too much work";
    case Trouble::kUnknownVocabulary:
      return "cannot be checked: the schema requires a vocabulary that is not known";
    default:
      return {};
  }
}

}  // namespace schema
}  // namespace hearth
