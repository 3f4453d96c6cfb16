// The walk into objects: their members, the names of these, and what one member demands of others.
//
// "properties", "patternProperties" and "additionalProperties" are settled in one pass over the
// instance's members, since the last of them is for members that neither of the others knows.
#include "base/json_members.h"
#include "schema/keywords/members.h"
#include "schema/walk/questions.h"

namespace hearth::schema {
namespace {

bool memberConforms(Walker& walker, const Frame& frame, json_object* schema, lh_entry* entry,
                    Id via) {
  Frame next = frame.forMember(schema, entry, via);
  return walker.conforms(next, nullptr);
}

// Holds one member against the schema of each pattern that its name matches, and sets isKnown when
// one does.
bool patternsAllow(Walker& walker, const Frame& frame, json_object* patterns, lh_entry* entry,
                   bool& isKnown) {
  json_object_object_foreach(patterns, pattern, schema) {
    const bool matches = walker.workshop().patterns.matches(pattern, nameOfMember(entry));
    if (walker.effort().isStopped()) {
      return walker.report().fail(frame, Id::kPatternProperties, patterns);
    }
    if (matches && !memberConforms(walker, frame, schema, entry, Id::kPatternProperties)) {
      return false;
    }
    isKnown |= matches;
  }
  return true;
}

// Goes through the instance's members, and for each one through the keywords that may know it. The
// schema's properties are expected in about the same order, which OrderedLookup makes cheap.
bool membersConform(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  Effort& effort = walker.effort();
  OrderedLookup properties(pending[Turn::kProperties], effort);
  json_object* const patterns = pending[Turn::kPatternProperties];
  lh_table* const table = json_object_get_object(frame.instance);
  if (!effort.spend(static_cast<std::size_t>(lh_table_length(table)))) {
    return walker.report().fail(frame, Id::kProperties, nullptr);
  }
  std::size_t position = 0;
  for (lh_entry* entry = firstMember(table); entry != nullptr;
       entry = memberAfter(entry), ++position) {
    lh_entry* const property = properties.find(nameOfMember(entry));
    bool isKnown = property != nullptr;
    // A look-up that could not be paid for is no answer.
    if (!isKnown && effort.isStopped()) {
      return walker.report().fail(frame, Id::kProperties, nullptr);
    }
    if (isKnown &&
        !memberConforms(walker, frame, valueOfMember(property), entry, Id::kProperties)) {
      return false;
    }
    if (patterns != nullptr && !patternsAllow(walker, frame, patterns, entry, isKnown)) {
      return false;
    }
    if (!isKnown && pending.has(Turn::kAdditionalProperties)) {
      if (!memberConforms(walker, frame, pending[Turn::kAdditionalProperties], entry,
                          Id::kAdditionalProperties)) {
        return false;
      }
      isKnown = true;
    }
    if (isKnown && marks != nullptr) {
      marks->mark(position);
    }
  }
  return true;
}

// A name is no value in the instance, so each is made one for as long as it is looked at.
bool namesConform(Walker& walker, const Frame& frame, json_object* schema) {
  json_object_object_foreach(frame.instance, name, member) {
    (void)member;
    if (!walker.effort().spend(costOfName(name))) {
      return walker.report().fail(frame, Id::kPropertyNames, schema);
    }
    json_object* const text = json_object_new_string(name);
    if (text == nullptr) {
      return walker.report().stop(frame, Id::kPropertyNames, schema, Trouble::kNoMemory);
    }
    Frame next = frame.forSchema(schema, Id::kPropertyNames);
    next.instance = text;
    const bool conforms = walker.conforms(next, nullptr);
    json_object_put(text);
    if (!conforms) {
      return false;
    }
  }
  return true;
}

// Holds the whole object against what one of its members demands: a schema or, in `dependencies`,
// perhaps a list of names, which means what "required" does.
bool dependencyHolds(Walker& walker, const Frame& frame, json_object* demand, Id via,
                     Marks* marks) {
  if (json_object_get_type(demand) != json_type_array || via != Id::kDependencies) {
    return walker.conformsTo(frame, demand, via, marks);
  }
  const Keyword required = *findKeyword("required", Draft::k7);
  return satisfies(frame.instance, required, demand, frame.schema, walker.draftAt(frame),
                   walker.workshop()) ||
         walker.report().fail(frame, via, demand);
}

// Only the demands of members that the object has count.
bool dependenciesHold(Walker& walker, const Frame& frame, json_object* dependencies, Id via,
                      Marks* marks) {
  json_object_object_foreach(dependencies, name, demand) {
    if (!walker.effort().spend(1 + costOfName(name))) {
      return walker.report().fail(frame, via, dependencies);
    }
    if (json_object_object_get_ex(frame.instance, name, nullptr) &&
        !dependencyHolds(walker, frame, demand, via, marks)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool conformsAsObject(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  if (pending.has(Turn::kPropertyNames) &&
      !namesConform(walker, frame, pending[Turn::kPropertyNames])) {
    return false;
  }
  if (pending.has(Turn::kDependencies) &&
      !dependenciesHold(walker, frame, pending[Turn::kDependencies], Id::kDependencies, marks)) {
    return false;
  }
  if (pending.has(Turn::kDependentSchemas) &&
      !dependenciesHold(walker, frame, pending[Turn::kDependentSchemas], Id::kDependentSchemas,
                        marks)) {
    return false;
  }
  return !pending.hasAny(Turn::kProperties, Turn::kAdditionalProperties) ||
         membersConform(walker, frame, pending, marks);
}

bool unmarkedMembersConform(Walker& walker, const Frame& frame, json_object* schema,
                            const Marks& marks) {
  std::size_t position = 0;
  lh_table* const table = json_object_get_object(frame.instance);
  for (lh_entry* entry = firstMember(table); entry != nullptr;
       entry = memberAfter(entry), ++position) {
    if (!marks.has(position) &&
        !memberConforms(walker, frame, schema, entry, Id::kUnevaluatedProperties)) {
      return false;
    }
  }
  return true;
}

}  // namespace hearth::schema
