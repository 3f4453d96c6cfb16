// The walk into objects.
#include "schema/keywords/members.h"
#include "schema/walk/walker.h"

namespace hearth {
namespace schema {
namespace {

const char* nameOfMember(lh_entry* entry) {
  return static_cast<const char*>(lh_entry_k(entry));
}
json_object* valueOf(lh_entry* entry) {
  return static_cast<json_object*>(lh_entry_v(entry));
}

}  // namespace

bool Walker::followObject(const Place& place, const Slots& slots, Marks* marks) {
  if (slots.has(Slot::kPropertyNames) && !names(place, slots[Slot::kPropertyNames])) {
    return false;
  }
  if (slots.has(Slot::kDependencies) &&
      !dependencies(place, slots[Slot::kDependencies], Id::kDependencies, marks)) {
    return false;
  }
  if (slots.has(Slot::kDependentSchemas) &&
      !dependencies(place, slots[Slot::kDependentSchemas], Id::kDependentSchemas, marks)) {
    return false;
  }
  return !slots.any(Slot::kProperties, Slot::kAdditionalProperties) || members(place, slots, marks);
}

bool Walker::members(const Place& place, const Slots& slots, Marks* marks) {
  OrderedLookup properties(slots[Slot::kProperties], effort());
  json_object* const patterns = slots[Slot::kPatternProperties];
  lh_table* const table = json_object_get_object(place.instance);
  if (!effort().spend(static_cast<size_t>(lh_table_length(table)))) {
    return fail(place, Id::kProperties, nullptr);
  }
  size_t position = 0;
  for (lh_entry* entry = lh_table_head(table); entry; entry = lh_entry_next(entry), ++position) {
    lh_entry* const property = properties.find(nameOfMember(entry));
    bool seen = property != nullptr;
    if (!seen && effort().stopped()) {
      return fail(place, Id::kProperties, nullptr);
    }
    if (property && !memberConforms(place, valueOf(property), entry, Id::kProperties)) {
      return false;
    }
    if (patterns && !patternMembers(place, patterns, entry, &seen)) {
      return false;
    }
    if (!seen && slots.has(Slot::kAdditionalProperties)) {
      if (!memberConforms(place, slots[Slot::kAdditionalProperties], entry,
                          Id::kAdditionalProperties)) {
        return false;
      }
      seen = true;
    }
    if (seen && marks) {
      marks->mark(position);
    }
  }
  return true;
}

bool Walker::memberConforms(const Place& place, json_object* schema, lh_entry* entry, Id via) {
  Place next = place.memberPlace(schema, entry, via);
  return conforms(next, nullptr);
}

bool Walker::patternMembers(const Place& place, json_object* patterns, lh_entry* entry,
                            bool* seen) {
  json_object_object_foreach(patterns, pattern, schema) {
    const bool matches = workshop_.patterns.matches(pattern, nameOfMember(entry));
    if (effort().stopped()) {
      return fail(place, Id::kPatternProperties, patterns);
    }
    if (matches && !memberConforms(place, schema, entry, Id::kPatternProperties)) {
      return false;
    }
    *seen |= matches;
  }
  return true;
}

bool Walker::names(const Place& place, json_object* schema) {
  json_object_object_foreach(place.instance, name, member) {
    (void)member;
    if (!effort().spend(costOfName(name))) {
      return fail(place, Id::kPropertyNames, schema);
    }
    json_object* const text = json_object_new_string(name);
    if (!text) {
      return stop(place, Id::kPropertyNames, schema, Trouble::kNoMemory);
    }
    Place next = place.same(schema, Id::kPropertyNames);
    next.instance = text;
    const bool result = conforms(next, nullptr);
    json_object_put(text);
    if (!result) {
      return false;
    }
  }
  return true;
}

bool Walker::dependencies(const Place& place, json_object* dependencies, Id via, Marks* marks) {
  json_object_object_foreach(dependencies, name, value) {
    if (!effort().spend(1 + costOfName(name))) {
      return fail(place, via, dependencies);
    }
    if (json_object_object_get_ex(place.instance, name, nullptr) &&
        !dependency(place, value, via, marks)) {
      return false;
    }
  }
  return true;
}

// In `dependencies` a dependency is a schema or a list of names.
bool Walker::dependency(const Place& place, json_object* value, Id via, Marks* marks) {
  if (json_object_get_type(value) != json_type_array || via != Id::kDependencies) {
    return holds(place, value, via, marks);
  }
  const Keyword required = *findKeyword("required", Draft::k7);
  return satisfies(place.instance, required, value, place.schema, draftAt(place), workshop_) ||
         fail(place, via, value);
}

bool Walker::unevaluatedMembers(const Place& place, json_object* schema, const Marks& marks) {
  size_t position = 0;
  lh_table* const table = json_object_get_object(place.instance);
  for (lh_entry* entry = lh_table_head(table); entry; entry = lh_entry_next(entry), ++position) {
    if (!marks.has(position) && !memberConforms(place, schema, entry, Id::kUnevaluatedProperties)) {
      return false;
    }
  }
  return true;
}

}  // namespace schema
}  // namespace hearth
