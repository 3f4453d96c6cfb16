// Keywords that look at one value and at nothing below it: each is one small question here, and
// satisfies() picks the one of the keyword. The walk asks it for every keyword whose turn is "now",
// and keeps values away to which a keyword does not apply ("maxLength" of a number).
//
// A question whose cost grows with the document spends effort first. The value of a keyword may be
// of the right type and still be unusable (a negative "maxLength", a type that is none); the effort
// is then stopped, which ends the whole validation.
#include "schema/keywords/assertions.h"

#include <cstring>

#include "base/utf8.h"
#include "schema/format/format.h"
#include "schema/keywords/content.h"
#include "schema/keywords/equality.h"
#include "schema/keywords/members.h"
#include "schema/keywords/number.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

// The set of types that the name means, a bit per json_type; 0 for no name of a type.
unsigned typesNamed(json_object* name) {
  struct Row {
    char name[8];
    uint8_t types;
  };
  static constexpr Row kRows[] = {
      {"string", 1 << json_type_string}, {"object", 1 << json_type_object},
      {"integer", 1 << json_type_int},   {"boolean", 1 << json_type_boolean},
      {"array", 1 << json_type_array},   {"number", 1 << json_type_int | 1 << json_type_double},
      {"null", 1 << json_type_null},
  };
  if (json_object_get_type(name) == json_type_string) {
    const char* const text = json_object_get_string(name);
    for (const Row& row : kRows) {
      if (strcmp(row.name, text) == 0) {
        return row.types;
      }
    }
  }
  return 0;
}

// From draft-06 on, 1.0 is an integer too. Asked after the instance's own type did not match.
bool isIntegerAfterAll(json_object* instance, unsigned types, Draft draft) {
  return types == 1U << json_type_int && draft != Draft::k4 &&
         json_object_get_type(instance) == json_type_double && isIntegral(numberOf(instance));
}

bool isOneOfTypes(json_object* instance, json_object* types, Draft draft, Effort& effort) {
  const bool isList = json_object_get_type(types) == json_type_array;
  const std::size_t count = isList ? json_object_array_length(types) : 1;
  for (std::size_t i = 0; i < count && effort.spend(1); ++i) {
    const unsigned named = typesNamed(isList ? json_object_array_get_idx(types, i) : types);
    if (named & typeBit(instance) || isIntegerAfterAll(instance, named, draft)) {
      return true;
    }
    if (named == 0) {
      return effort.stop(Trouble::kBadValue);
    }
  }
  return false;
}

// The keyword "enum".
bool isListed(json_object* instance, json_object* values, Effort& effort) {
  const std::size_t count = json_object_array_length(values);
  for (std::size_t i = 0; i < count && !effort.isStopped(); ++i) {
    if (isEqual(instance, json_object_array_get_idx(values, i), effort)) {
      return true;
    }
  }
  return false;
}

// The keyword "multipleOf". A step must be more than 0.
bool isDivisible(json_object* instance, json_object* step, Effort& effort) {
  const Number number = numberOf(step);
  if (compare(number, Number{false, false, 0, 0}) != Order::kGreater) {
    return effort.stop(Trouble::kBadValue);
  }
  return isMultiple(numberOf(instance), number);
}

// True on the allowed side of the bound, and on the bound itself unless it is exclusive.
bool isWithin(json_object* instance, json_object* bound, Order side, bool exclusive) {
  const Order order = compare(instance, bound);
  return order == side || (order == Order::kEqual && !exclusive);
}

// A bound of a size must be a count, be it written as 3 or 3.0.
bool isAtMost(std::size_t size, json_object* bound, Effort& effort) {
  uint64_t count = 0;
  return isCount(bound, count) ? size <= count : effort.stop(Trouble::kBadValue);
}

bool isAtLeast(std::size_t size, json_object* bound, Effort& effort) {
  uint64_t count = 0;
  return isCount(bound, count) ? size >= count : effort.stop(Trouble::kBadValue);
}

std::size_t memberCount(json_object* object) {
  return static_cast<std::size_t>(json_object_object_length(object));
}

// The keyword "required", and each list of "dependentRequired".
bool hasMembers(json_object* instance, json_object* names, Effort& effort) {
  const std::size_t count = json_object_array_length(names);
  OrderedLookup members(instance, effort);  // required names often stand in the members' order
  if (!effort.spend(count)) {
    return false;
  }
  for (std::size_t i = 0; i < count; ++i) {
    json_object* const name = json_object_array_get_idx(names, i);
    if (json_object_get_type(name) != json_type_string) {
      return effort.stop(Trouble::kBadValue);
    }
    if (members.find(json_object_get_string(name)) == nullptr) {
      return false;
    }
  }
  return true;
}

// The keyword "dependentRequired": lists of names, by the member that needs them.
bool hasDependents(json_object* instance, json_object* dependents, Effort& effort) {
  json_object_object_foreach(dependents, name, names) {
    if (json_object_get_type(names) != json_type_array) {
      return effort.stop(Trouble::kBadValue);
    }
    if (!effort.spend(1 + costOfName(name)) ||
        (json_object_object_get_ex(instance, name, nullptr) &&
         !hasMembers(instance, names, effort))) {
      return false;
    }
  }
  return true;
}

// Lengths count characters. A character has one to four bytes, so the number of bytes decides for
// most texts, and only what is near the bound is counted.
bool isLongEnough(json_object* text, json_object* bound, Effort& effort) {
  const auto bytes = static_cast<std::size_t>(json_object_get_string_len(text));
  return isAtLeast((bytes + 3) / 4, bound, effort) ||
         (effort.spend(bytes / 64) && isAtLeast(countCharacters(textOf(text)), bound, effort));
}

bool isShortEnough(json_object* text, json_object* bound, Effort& effort) {
  const auto bytes = static_cast<std::size_t>(json_object_get_string_len(text));
  return isAtMost(bytes, bound, effort) ||
         (effort.spend(bytes / 64) && isAtMost(countCharacters(textOf(text)), bound, effort));
}

// The keyword "uniqueItems", which asks for nothing when it is false.
bool hasNoEqualElements(json_object* instance, json_object* wanted, Effort& effort) {
  return !json_object_get_boolean(wanted) ||
         (!findEqualElements(instance, effort).found && !effort.isStopped());
}

}  // namespace

// The first test is for the common case: one type named, and the instance has it. Its table is in
// the order of json_type. Everything else, a list or a 1.0 that is an integer, is decided behind
// it.
bool isOfTypes(json_object* instance, json_object* types, Draft draft, Effort& effort) {
  static constexpr char kNames[][8] = {"null",   "boolean", "number", "integer",
                                       "object", "array",   "string"};
  return (json_object_get_type(types) == json_type_string &&
          strcmp(json_object_get_string(types), kNames[json_object_get_type(instance)]) == 0) ||
         isOneOfTypes(instance, types, draft, effort);
}

bool isExclusive(json_object* schema, const char* name, Draft draft) {
  json_object* flag = nullptr;
  return draft == Draft::k4 && json_object_object_get_ex(schema, name, &flag) &&
         json_object_get_type(flag) == json_type_boolean && json_object_get_boolean(flag);
}

// The keywords that are not here say something about the schema, or lead to other schemas.
bool satisfies(json_object* instance, const Keyword& keyword, json_object* value,
               json_object* schema, Draft draft, Workshop& workshop) {
  Effort& effort = workshop.effort;
  switch (keyword.id) {
    case Id::kType:
      return isOfTypes(instance, value, draft, effort);
    case Id::kEnum:
      return isListed(instance, value, effort);
    case Id::kConst:
      return isEqual(instance, value, effort);
    case Id::kMultipleOf:
      return isDivisible(instance, value, effort);
    case Id::kMaximum:
      return isWithin(instance, value, Order::kLess,
                      isExclusive(schema, "exclusiveMaximum", draft));
    case Id::kMinimum:
      return isWithin(instance, value, Order::kGreater,
                      isExclusive(schema, "exclusiveMinimum", draft));
    case Id::kExclusiveMaximum:
      return isWithin(instance, value, Order::kLess, true);
    case Id::kExclusiveMinimum:
      return isWithin(instance, value, Order::kGreater, true);
    case Id::kMaxLength:
      return isShortEnough(instance, value, effort);
    case Id::kMinLength:
      return isLongEnough(instance, value, effort);
    case Id::kPattern:
      return workshop.patterns.matches(textOf(value), textOf(instance));
    case Id::kFormat:
      return hasFormat(textOf(instance), textOf(value), workshop);
    case Id::kContentEncoding:
      return isEncoded(textOf(instance), textOf(value), effort);
    case Id::kContentMediaType:
      return isOfMediaType(textOf(instance), textOf(value), schema, effort);
    case Id::kMaxItems:
      return isAtMost(json_object_array_length(instance), value, effort);
    case Id::kMinItems:
      return isAtLeast(json_object_array_length(instance), value, effort);
    case Id::kUniqueItems:
      return hasNoEqualElements(instance, value, effort);
    case Id::kMaxProperties:
      return isAtMost(memberCount(instance), value, effort);
    case Id::kMinProperties:
      return isAtLeast(memberCount(instance), value, effort);
    case Id::kRequired:
      return hasMembers(instance, value, effort);
    case Id::kDependentRequired:
      return hasDependents(instance, value, effort);
    default:
      return true;
  }
}

}  // namespace hearth::schema
