#include "schema/walker.h"

namespace hearth {
namespace schema {
namespace {

bool isDraft7OrOlder(Draft draft) {
  return draft <= Draft::k7;
}

// The vocabularies whose keywords say nothing in this resource. From 2020-12 on, a format is a
// remark unless the vocabularies say that it is a rule.
unsigned silentIn(const Resource& resource) {
  const bool remark =
      resource.draft == Draft::k2020 && (resource.vocabularies & kFormatAssertion) == 0;
  return ~unsigned{resource.vocabularies} | (remark ? unsigned{kFormatVocabulary} : 0U);
}

// Whether a keyword may tell that its schema belongs to another resource.
bool movesSchema(Id id) {
  return id == Id::kId || id == Id::kSchema;
}

uintptr_t stackNow() {
  return reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
}

size_t sizeOf(json_object* container) {
  return json_object_get_type(container) == json_type_object
             ? static_cast<size_t>(json_object_object_length(container))
             : json_object_array_length(container);
}

}  // namespace

Conformance Walker::run(json_object* instance) {
  Place root{nullptr, resources_.at(0).top, instance, nullptr, Place::kNoElement, 0, 0, Id::kNone};
  stack_ = stackNow();
  const bool holds = effort().stopped() ? stop(root, Id::kSchema, nullptr, effort().trouble())
                                        : conforms(root, nullptr);
  if (effort().stopped()) {
    return isOfSchema(effort().trouble()) ? Conformance::kUnusable : Conformance::kExhausted;
  }
  return holds && !violates_ ? Conformance::kConforms : Conformance::kViolates;
}

bool Walker::enter(const Place& place) {
  if (place.depth < kMaxDepth && stack_ - stackNow() < kMaxStack) {
    return effort().spend(1) || fail(place, Id::kNone, nullptr);
  }
  // Too deep, or going round in a circle: the same schema for the same value, on the way here.
  for (const Place* outer = place.outer; outer; outer = outer->outer) {
    if (outer->schema == place.schema && outer->instance == place.instance) {
      return stop(place, place.via, nullptr, Trouble::kEndless);
    }
  }
  return stop(place, place.via, nullptr, Trouble::kTooDeep);
}

bool Walker::conforms(Place& place, Marks* marks) {
  if (!enter(place)) {
    return false;
  }
  const json_type type = json_object_get_type(place.schema);
  if (type == json_type_boolean) {
    return json_object_get_boolean(place.schema) || fail(place, place.via, place.schema);
  }
  if (type != json_type_object) {
    return stop(place, place.via, place.schema, Trouble::kBadSchema);
  }
  Slots slots;
  if (!read(place, slots)) {
    return false;
  }
  if (slots.empty()) {
    return true;
  }
  return slots.has(Slot::kUnevaluated) ? followMarking(place, slots, marks)
                                       : followAll(place, slots, marks);
}

// The members come in any order, so one that changes what the others mean ($ref, $id, $schema) may
// come after a rule that it would have made void. Only a rule that fails makes that matter: then
// these three are looked for, and the schema read once more if one was missed.
bool Walker::read(Place& place, Slots& slots) {
  Reading reading = readOnce(place, slots, false);
  if (reading == Reading::kAgain) {
    slots.clear();
    reading = readOnce(place, slots, true);
  }
  return reading == Reading::kHolds;
}

Walker::Reading Walker::readOnce(Place& place, Slots& slots, bool settled) {
  if (settled && settle(place, slots)) {
    return Reading::kHolds;
  }
  const Draft draft = draftAt(place);
  const unsigned silent = silentIn(resources_.at(place.resource));
  const unsigned instanceBit = typeBit(place.instance);
  lh_table* const members = json_object_get_object(place.schema);
  if (!effort().spend(static_cast<size_t>(lh_table_length(members)))) {
    fail(place, Id::kNone, nullptr);
    return Reading::kFails;
  }
  for (lh_entry* entry = lh_table_head(members); entry; entry = lh_entry_next(entry)) {
    const Keyword* const keyword = findKeyword(static_cast<const char*>(lh_entry_k(entry)), draft);
    if (!keyword || (keyword->vocabulary & silent)) {
      continue;
    }
    json_object* const value = static_cast<json_object*>(lh_entry_v(entry));
    const bool usable = (keyword->valueTypes & typeBit(value)) != 0;
    const bool applies = (keyword->appliesTo & instanceBit) != 0;
    if (keyword->slot == Slot::kNever) {
      if (!settled && usable && movesSchema(keyword->id) && belongsElsewhere(place)) {
        return Reading::kAgain;
      }
    } else if (!usable) {
      return refuse(place, *keyword, value, settled);
    } else if (keyword->slot == Slot::kNow) {
      if (applies && !holdsNow(place, *keyword, value, draft)) {
        const Reading refused = refuse(place, *keyword, value, settled);
        if (refused != Reading::kHolds) {
          return refused;
        }
      }
    } else if (keyword->id == Id::kRef && isDraft7OrOlder(draft)) {
      slots.clear();
      slots.fill(Slot::kRef, value);
      return Reading::kHolds;
    } else if (applies) {
      slots.fill(keyword->slot, value);
    }
  }
  return Reading::kHolds;
}

// The most frequent keyword without the way through all others.
bool Walker::holdsNow(const Place& place, const Keyword& keyword, json_object* value, Draft draft) {
  return keyword.id == Id::kType
             ? isOfTypes(place.instance, value, draft, effort())
             : satisfies(place.instance, keyword, value, place.schema, draft, workshop_);
}

Walker::Reading Walker::refuse(const Place& place, const Keyword& keyword, json_object* value,
                               bool settled) {
  if (!settled && belongsElsewhere(place)) {
    return Reading::kAgain;
  }
  const bool goesOn = (keyword.valueTypes & typeBit(value)) != 0
                          ? fail(place, keyword.id, value)
                          : stop(place, keyword.id, value, Trouble::kBadValue);
  return goesOn ? Reading::kHolds : Reading::kFails;
}

// Whether the schema starts a resource of its own, or a reference makes its other members void.
// What they said before, even that they are unusable, does not count then.
bool Walker::belongsElsewhere(const Place& place) {
  const Trouble trouble = effort().trouble();
  if (trouble != Trouble::kNone && trouble != Trouble::kBadValue &&
      trouble != Trouble::kBadPattern) {
    return false;
  }
  effort().forget();
  if (resources_.of(place.schema, place.resource) != place.resource ||
      (isDraft7OrOlder(draftAt(place)) &&
       json_object_object_get_ex(place.schema, "$ref", nullptr))) {
    return true;
  }
  if (trouble != Trouble::kNone) {
    effort().stop(trouble);
  }
  return false;
}

// Enters the resource that the schema starts. True when a reference is all that counts in it.
bool Walker::settle(Place& place, Slots& slots) {
  place.resource = resources_.of(place.schema, place.resource);
  json_object* reference = nullptr;
  if (isDraft7OrOlder(draftAt(place)) &&
      json_object_object_get_ex(place.schema, "$ref", &reference) &&
      json_object_get_type(reference) == json_type_string) {
    slots.fill(Slot::kRef, reference);
    return true;
  }
  return false;
}

bool Walker::followAll(const Place& place, const Slots& slots, Marks* marks) {
  if (slots.has(Slot::kRef) && !followReference(place, slots[Slot::kRef], marks)) {
    return false;
  }
  if (slots.has(Slot::kDynamicRef) && !followDynamic(place, slots[Slot::kDynamicRef], marks)) {
    return false;
  }
  if (slots.any(Slot::kAllOf, Slot::kElse) && !followCombinations(place, slots, marks)) {
    return false;
  }
  if (!slots.any(Slot::kProperties, Slot::kDependentSchemas)) {
    return true;
  }
  return json_object_get_type(place.instance) == json_type_object
             ? followObject(place, slots, marks)
             : followArray(place, slots, marks);
}

// The unevaluated keywords see what everything else in this schema has marked, and mark the rest.
bool Walker::followMarking(const Place& place, const Slots& slots, Marks* marks) {
  json_object* const schema = slots[Slot::kUnevaluated];
  Marks own(sizeOf(place.instance));
  if (!effort().spend(own.words()) || !followAll(place, slots, &own)) {
    return effort().stopped() && fail(place, Id::kNone, nullptr);
  }
  if (marks) {
    marks->markAll();
  }
  return json_object_get_type(place.instance) == json_type_object
             ? unevaluatedMembers(place, schema, own)
             : unevaluatedElements(place, schema, own);
}

}  // namespace schema
}  // namespace hearth
