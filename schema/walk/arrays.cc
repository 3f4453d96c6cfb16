// The walk into arrays.
#include "schema/keywords/number.h"
#include "schema/walk/walker.h"

namespace hearth {
namespace schema {

bool Walker::followArray(const Place& place, const Slots& slots, Marks* marks) {
  if (slots.any(Slot::kItems, Slot::kAdditionalItems) && !items(place, slots, marks)) {
    return false;
  }
  return !slots.has(Slot::kContains) || contains(place, slots, marks);
}

// The first elements have schemas of their own, the rest share one. Where they stand has changed: a
// list in `items` and `additionalItems` became `prefixItems` and `items`.
bool Walker::items(const Place& place, const Slots& slots, Marks* marks) {
  const bool tuple = json_object_get_type(slots[Slot::kItems]) == json_type_array;
  json_object* const first = tuple ? slots[Slot::kItems] : slots[Slot::kPrefixItems];
  const Slot restSlot = tuple ? Slot::kAdditionalItems : Slot::kItems;
  const size_t length = json_object_array_length(place.instance);
  const size_t own = first ? json_object_array_length(first) : 0;
  for (size_t i = 0; i < own && i < length; ++i) {
    if (!elementConforms(place, json_object_array_get_idx(first, i), i,
                         tuple ? Id::kItems : Id::kPrefixItems)) {
      return false;
    }
    if (marks) {
      marks->mark(i);
    }
  }
  if (!slots.has(restSlot)) {
    return true;
  }
  for (size_t i = own; i < length; ++i) {
    if (!elementConforms(place, slots[restSlot], i, tuple ? Id::kAdditionalItems : Id::kItems)) {
      return false;
    }
  }
  if (marks) {
    marks->markAll();
  }
  return true;
}

bool Walker::elementConforms(const Place& place, json_object* schema, size_t i, Id via) {
  Place next = place.elementPlace(schema, i, via);
  return conforms(next, nullptr);
}

// From 2020-12 on, elements found by contains count as looked at.
bool Walker::contains(const Place& place, const Slots& slots, Marks* marks) {
  uint64_t least = 1;
  uint64_t most = UINT64_MAX;
  if ((slots.has(Slot::kMinContains) && !isCount(slots[Slot::kMinContains], &least)) ||
      (slots.has(Slot::kMaxContains) && !isCount(slots[Slot::kMaxContains], &most))) {
    return stop(place, Id::kContains, slots[Slot::kContains], Trouble::kBadValue);
  }
  const bool marking = marks && draftAt(place) == Draft::k2020;
  const size_t length = json_object_array_length(place.instance);
  size_t found = 0;
  ++quiet_;
  for (size_t i = 0; i < length && !effort().stopped(); ++i) {
    if (elementConforms(place, slots[Slot::kContains], i, Id::kContains)) {
      ++found;
      if (marking) {
        marks->mark(i);
      }
    }
    if (!marking && found >= least && most == UINT64_MAX) {
      break;
    }
  }
  --quiet_;
  if (effort().stopped()) {
    return false;
  }
  if (found < least) {
    const bool named = slots.has(Slot::kMinContains);
    return failCount(place, named ? Id::kMinContains : Id::kContains,
                     slots[named ? Slot::kMinContains : Slot::kContains], found);
  }
  return found <= most || failCount(place, Id::kMaxContains, slots[Slot::kMaxContains], found);
}

bool Walker::unevaluatedElements(const Place& place, json_object* schema, const Marks& marks) {
  const size_t length = json_object_array_length(place.instance);
  for (size_t i = 0; i < length; ++i) {
    if (!marks.has(i) && !elementConforms(place, schema, i, Id::kUnevaluatedItems)) {
      return false;
    }
  }
  return true;
}

}  // namespace schema
}  // namespace hearth
