// The walk through the keywords that combine schemas for one and the same value.
#include "schema/walk/walker.h"

namespace hearth {
namespace schema {

bool Walker::followCombinations(const Place& place, const Slots& slots, Marks* marks) {
  if (slots.has(Slot::kAllOf) && !all(place, slots[Slot::kAllOf], marks)) {
    return false;
  }
  if (slots.has(Slot::kAnyOf) && !any(place, slots[Slot::kAnyOf], marks)) {
    return false;
  }
  if (slots.has(Slot::kOneOf) && !one(place, slots[Slot::kOneOf], marks)) {
    return false;
  }
  if (slots.has(Slot::kNot) && !negated(place, slots[Slot::kNot])) {
    return false;
  }
  return !slots.has(Slot::kIf) || conditional(place, slots, marks);
}

bool Walker::holds(const Place& place, json_object* schema, Id via, Marks* marks) {
  Place next = place.same(schema, via);
  return conforms(next, marks);
}

// A failure on trial is no violation. What a failed trial has marked does not count.
bool Walker::trial(const Place& place, json_object* schema, Id via, Marks* marks) {
  if (marks) {
    return markingTrial(place, schema, via, marks);
  }
  ++quiet_;
  const bool result = holds(place, schema, via, nullptr);
  --quiet_;
  return result;
}

bool Walker::markingTrial(const Place& place, json_object* schema, Id via, Marks* marks) {
  if (!effort().spend(marks->words())) {
    return fail(place, via, nullptr);
  }
  Marks own = marks->fresh();
  ++quiet_;
  const bool result = holds(place, schema, via, &own);
  --quiet_;
  if (result) {
    marks->add(own);
  }
  return result;
}

bool Walker::all(const Place& place, json_object* schemas, Marks* marks) {
  const size_t count = json_object_array_length(schemas);
  for (size_t i = 0; i < count; ++i) {
    if (!holds(place, json_object_array_get_idx(schemas, i), Id::kAllOf, marks)) {
      return false;
    }
  }
  return true;
}

// One match is enough, unless marks are kept: then every match adds its own.
bool Walker::any(const Place& place, json_object* schemas, Marks* marks) {
  const size_t count = json_object_array_length(schemas);
  bool matched = false;
  for (size_t i = 0; i < count && !effort().stopped() && (!matched || marks); ++i) {
    matched |= trial(place, json_object_array_get_idx(schemas, i), Id::kAnyOf, marks);
  }
  return !effort().stopped() && (matched || failAlternatives(place, Id::kAnyOf, schemas));
}

bool Walker::one(const Place& place, json_object* schemas, Marks* marks) {
  const size_t count = json_object_array_length(schemas);
  size_t matched = 0;
  for (size_t i = 0; i < count && !effort().stopped() && matched < 2; ++i) {
    matched += trial(place, json_object_array_get_idx(schemas, i), Id::kOneOf, marks);
  }
  if (effort().stopped() || matched == 1) {
    return !effort().stopped();
  }
  return matched == 0 ? failAlternatives(place, Id::kOneOf, schemas)
                      : fail(place, Id::kOneOf, schemas);
}

bool Walker::negated(const Place& place, json_object* schema) {
  const bool matched = trial(place, schema, Id::kNot, nullptr);
  return !effort().stopped() && (!matched || fail(place, Id::kNot, schema));
}

bool Walker::conditional(const Place& place, const Slots& slots, Marks* marks) {
  const bool matched = trial(place, slots[Slot::kIf], Id::kIf, marks);
  const Slot branch = matched ? Slot::kThen : Slot::kElse;
  if (effort().stopped() || !slots.has(branch)) {
    return !effort().stopped();
  }
  return holds(place, slots[branch], matched ? Id::kThen : Id::kElse, marks);
}

}  // namespace schema
}  // namespace hearth
