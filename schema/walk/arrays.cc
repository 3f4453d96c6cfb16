// The walk into arrays: the schemas of their elements, and how many match "contains".
//
// An element counts as looked at when it has a schema of its own, or when there is one for the
// rest; in 2020-12 also when it matches "contains".
#include "schema/keywords/number.h"
#include "schema/walk/questions.h"

namespace hearth::schema {
namespace {

bool elementConforms(Walker& walker, const Frame& frame, json_object* schema, std::size_t i,
                     Id via) {
  Frame next = frame.forElement(schema, i, via);
  return walker.conforms(next, nullptr);
}

// The first elements have schemas of their own, the rest share one. The keywords changed names: up
// to 2019-09 a list in `items` is for the first and `additionalItems` for the rest, later
// `prefixItems` and `items`.
bool elementsConform(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  const bool isTuple = json_object_get_type(pending[Turn::kItems]) == json_type_array;
  json_object* const first = isTuple ? pending[Turn::kItems] : pending[Turn::kPrefixItems];
  const Turn rest = isTuple ? Turn::kAdditionalItems : Turn::kItems;
  const std::size_t length = json_object_array_length(frame.instance);
  const std::size_t own = first != nullptr ? json_object_array_length(first) : 0;
  for (std::size_t i = 0; i < own && i < length; ++i) {
    if (!elementConforms(walker, frame, json_object_array_get_idx(first, i), i,
                         isTuple ? Id::kItems : Id::kPrefixItems)) {
      return false;
    }
    if (marks != nullptr) {
      marks->mark(i);
    }
  }
  // Without a schema for the rest, any element may stand there, and stays without a mark.
  if (!pending.has(rest)) {
    return true;
  }
  for (std::size_t i = own; i < length; ++i) {
    if (!elementConforms(walker, frame, pending[rest], i,
                         isTuple ? Id::kAdditionalItems : Id::kItems)) {
      return false;
    }
  }
  if (marks != nullptr) {
    marks->markAll();
  }
  return true;
}

// Without a `maxContains` the search ends at the last match that is needed, except where each match
// counts as looked at, from 2020-12 on.
bool containsEnough(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  uint64_t least = 1;
  uint64_t most = UINT64_MAX;
  if ((pending.has(Turn::kMinContains) && !isCount(pending[Turn::kMinContains], least)) ||
      (pending.has(Turn::kMaxContains) && !isCount(pending[Turn::kMaxContains], most))) {
    return walker.report().stop(frame, Id::kContains, pending[Turn::kContains], Trouble::kBadValue);
  }
  const bool isMarking = marks != nullptr && walker.draftAt(frame) == Draft::k2020;
  const std::size_t length = json_object_array_length(frame.instance);
  std::size_t found = 0;
  // Each element is on trial: it may fail as long as enough others match.
  walker.report().beginTrial();
  for (std::size_t i = 0; i < length && !walker.effort().isStopped(); ++i) {
    if (elementConforms(walker, frame, pending[Turn::kContains], i, Id::kContains)) {
      ++found;
      if (isMarking) {
        marks->mark(i);
      }
    }
    if (!isMarking && found >= least && most == UINT64_MAX) {
      break;
    }
  }
  walker.report().endTrial();
  if (walker.effort().isStopped()) {
    return false;
  }
  // The bound at fault is told; without "minContains" it is the 1 that "contains" means by itself.
  if (found < least) {
    const bool isNamed = pending.has(Turn::kMinContains);
    return walker.report().failCount(frame, isNamed ? Id::kMinContains : Id::kContains,
                                     pending[isNamed ? Turn::kMinContains : Turn::kContains],
                                     found);
  }
  return found <= most ||
         walker.report().failCount(frame, Id::kMaxContains, pending[Turn::kMaxContains], found);
}

}  // namespace

bool conformsAsArray(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  if (pending.hasAny(Turn::kItems, Turn::kAdditionalItems) &&
      !elementsConform(walker, frame, pending, marks)) {
    return false;
  }
  return !pending.has(Turn::kContains) || containsEnough(walker, frame, pending, marks);
}

bool unmarkedElementsConform(Walker& walker, const Frame& frame, json_object* schema,
                             const Marks& marks) {
  const std::size_t length = json_object_array_length(frame.instance);
  for (std::size_t i = 0; i < length; ++i) {
    if (!marks.has(i) && !elementConforms(walker, frame, schema, i, Id::kUnevaluatedItems)) {
      return false;
    }
  }
  return true;
}

}  // namespace hearth::schema
