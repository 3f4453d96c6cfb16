#include "schema/assertions.h"

#include <cstring>

#include "schema/content.h"
#include "schema/equality.h"
#include "schema/format.h"
#include "schema/number.h"
#include "schema/text.h"

namespace hearth {
namespace schema {
namespace {

// The types that the name means, as bits of json_type; 0 for no name of a type.
unsigned typesNamed(const char* name) {
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
  for (const Row& row : kRows) {
    if (row.name[0] == name[0] && strcmp(row.name, name) == 0) {
      return row.types;
    }
  }
  return 0;
}

bool isOfType(json_object* instance, const char* name, Draft draft, Effort& effort) {
  const unsigned types = typesNamed(name);
  if (types & typeBit(instance)) {
    return true;
  }
  if (types == 0) {
    return effort.stop(Trouble::kBadValue);
  }
  // 1.0 is an integer, though draft-04 would not have it.
  return types == 1U << json_type_int && draft != Draft::k4 &&
         json_object_get_type(instance) == json_type_double && isIntegral(numberOf(instance));
}

bool isListed(json_object* instance, json_object* values, Effort& effort) {
  const size_t count = json_object_array_length(values);
  for (size_t i = 0; i < count && !effort.stopped(); ++i) {
    if (isEqual(instance, json_object_array_get_idx(values, i), effort)) {
      return true;
    }
  }
  return false;
}

bool isDivisible(json_object* instance, json_object* step, Effort& effort) {
  const Number number = numberOf(step);
  if (compare(number, Number{false, false, 0, 0}) != Order::kGreater) {
    return effort.stop(Trouble::kBadValue);
  }
  return isMultiple(numberOf(instance), number);
}

// Whether the instance lies on the allowed side of the bound; on it only where that is allowed.
bool isWithin(json_object* instance, json_object* bound, Order side, bool exclusive) {
  const Order order = compare(instance, bound);
  return order == side || (order == Order::kEqual && !exclusive);
}

bool isAtMost(size_t size, json_object* bound, Effort& effort) {
  uint64_t count = 0;
  return isCount(bound, &count) ? size <= count : effort.stop(Trouble::kBadValue);
}

bool isAtLeast(size_t size, json_object* bound, Effort& effort) {
  uint64_t count = 0;
  return isCount(bound, &count) ? size >= count : effort.stop(Trouble::kBadValue);
}

size_t memberCount(json_object* object) {
  return static_cast<size_t>(json_object_object_length(object));
}

// Names mostly stand in the order of the members, so the next member is tried before a look-up.
bool hasMembers(json_object* instance, json_object* names, Effort& effort) {
  const size_t count = json_object_array_length(names);
  lh_table* const members = json_object_get_object(instance);
  lh_entry* guess = lh_table_head(members);
  if (!effort.spend(count)) {
    return false;
  }
  for (size_t i = 0; i < count; ++i) {
    json_object* const name = json_object_array_get_idx(names, i);
    if (json_object_get_type(name) != json_type_string) {
      return effort.stop(Trouble::kBadValue);
    }
    const char* const text = json_object_get_string(name);
    if (!guess || strcmp(static_cast<const char*>(lh_entry_k(guess)), text) != 0) {
      guess = lh_table_lookup_entry(members, text);
      if (!guess) {
        return false;
      }
    }
    guess = lh_entry_next(guess);
  }
  return true;
}

bool hasDependents(json_object* instance, json_object* dependents, Effort& effort) {
  json_object_object_foreach(dependents, name, names) {
    if (json_object_get_type(names) != json_type_array) {
      return effort.stop(Trouble::kBadValue);
    }
    if (!effort.spend(1) || (json_object_object_get_ex(instance, name, nullptr) &&
                             !hasMembers(instance, names, effort))) {
      return false;
    }
  }
  return true;
}

// A character has one to four bytes, so most texts need no counting.
bool isLongEnough(std::string_view text, json_object* bound, Effort& effort) {
  return isAtLeast((text.size() + 3) / 4, bound, effort) ||
         (effort.spend(text.size() / 64) && isAtLeast(lengthOf(text), bound, effort));
}

bool isShortEnough(std::string_view text, json_object* bound, Effort& effort) {
  return isAtMost(text.size(), bound, effort) ||
         (effort.spend(text.size() / 64) && isAtMost(lengthOf(text), bound, effort));
}

bool hasNoEqualElements(json_object* instance, json_object* wanted, Effort& effort) {
  return !json_object_get_boolean(wanted) ||
         (!findEqualElements(instance, effort).found && !effort.stopped());
}

}  // namespace

bool isOfTypes(json_object* instance, json_object* types, Draft draft, Effort& effort) {
  if (json_object_get_type(types) == json_type_string) {
    return isOfType(instance, json_object_get_string(types), draft, effort);
  }
  const size_t count = json_object_array_length(types);
  for (size_t i = 0; i < count && effort.spend(1); ++i) {
    json_object* const name = json_object_array_get_idx(types, i);
    if (json_object_get_type(name) != json_type_string) {
      return effort.stop(Trouble::kBadValue);
    }
    if (isOfType(instance, json_object_get_string(name), draft, effort)) {
      return true;
    }
  }
  return false;
}

bool isExclusive(json_object* schema, const char* name, Draft draft) {
  json_object* flag = nullptr;
  return draft == Draft::k4 && json_object_object_get_ex(schema, name, &flag) &&
         json_object_get_type(flag) == json_type_boolean && json_object_get_boolean(flag);
}

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
      return isShortEnough(textOf(instance), value, effort);
    case Id::kMinLength:
      return isLongEnough(textOf(instance), value, effort);
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

}  // namespace schema
}  // namespace hearth
