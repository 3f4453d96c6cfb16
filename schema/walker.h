// The walk over an instance and its schema at once. A schema is looked at in two steps: its members
// are read once, and what concerns the instance alone is checked on the spot; what leads to other
// schemas waits in a slot until all members are known, since some of it depends on its neighbours.
// Nothing is compiled beforehand and nothing is allocated on the way.
#ifndef HEARTH_SCHEMA_WALKER_H
#define HEARTH_SCHEMA_WALKER_H

#include <json-c/json.h>

#include <cstddef>

#include "schema/assertions.h"
#include "schema/effort.h"
#include "schema/keywords.h"
#include "schema/marks.h"
#include "schema/resources.h"
#include "schema/validate.h"

namespace hearth {
namespace schema {

// Where the walk stands: a value, the schema it is held against, and the way that led here. Places
// live on the stack and form a list from the innermost one to the root.
struct Place {
  const Place* outer;  // null at the root
  json_object* schema;
  json_object* instance;
  const char* member;  // the step from the outer place's instance: a member,
  size_t element;      // an element, or none (kNoElement)
  ResourceIndex resource;
  uint16_t depth;
  Id via;  // the keyword that led here

  static constexpr size_t kNoElement = SIZE_MAX;

  // The places that follow from this one: the same value, a member of it, an element of it.
  [[nodiscard]] Place same(json_object* other, Id keyword) const {
    return {this, other, instance, nullptr, kNoElement, resource, next(), keyword};
  }
  [[nodiscard]] Place memberPlace(json_object* other, lh_entry* entry, Id keyword) const {
    return {this,
            other,
            static_cast<json_object*>(lh_entry_v(entry)),
            static_cast<const char*>(lh_entry_k(entry)),
            kNoElement,
            resource,
            next(),
            keyword};
  }
  [[nodiscard]] Place elementPlace(json_object* other, size_t i, Id keyword) const {
    return {this,   other,  json_object_array_get_idx(instance, i), nullptr, i, resource,
            next(), keyword};
  }

 private:
  [[nodiscard]] uint16_t next() const { return static_cast<uint16_t>(depth + 1); }
};

// The keywords of one schema that wait.
class Slots {
 public:
  // The keyword's value, or null.
  [[nodiscard]] json_object* operator[](Slot slot) const {
    return has(slot) ? values_[static_cast<size_t>(slot)] : nullptr;
  }
  [[nodiscard]] bool empty() const { return filled_ == 0; }
  [[nodiscard]] bool has(Slot slot) const {
    return (filled_ >> static_cast<unsigned>(slot) & 1) != 0;
  }
  [[nodiscard]] bool any(Slot first, Slot last) const {
    const unsigned below = (2U << static_cast<unsigned>(last)) - 1;
    return (filled_ & below) >> static_cast<unsigned>(first) != 0;
  }
  void clear() { filled_ = 0; }
  void fill(Slot slot, json_object* value) {
    filled_ |= 1U << static_cast<unsigned>(slot);
    values_[static_cast<size_t>(slot)] = value;
  }

 private:
  unsigned filled_ = 0;
  json_object* values_[static_cast<size_t>(Slot::kCount)];
};

class Walker {
 public:
  // Counts the audience's limit down as it tells.
  Walker(json_object* schema, Draft unnamed, Audience& audience)
      : resources_(schema, unnamed, workshop_.effort), audience_(audience) {}

  [[nodiscard]] Conformance run(json_object* instance);

 private:
  // Whether the place's instance conforms to its schema, as far as the walk is to know: a failure
  // that was told, and behind which the audience wants more, counts as none, so that the walk goes
  // on. With marks, also marks what of the instance was looked at.
  bool conforms(Place& place, Marks* marks);

  // Steps of conforms(): read the members, settle what they belong to, follow what waits.
  bool enter(const Place& place);
  bool read(Place& place, Slots& slots);
  enum class Reading { kHolds, kFails, kAgain };
  Reading readOnce(Place& place, Slots& slots, bool settled);
  bool holdsNow(const Place& place, const Keyword& keyword, json_object* value, Draft draft);
  Reading refuse(const Place& place, const Keyword& keyword, json_object* value, bool settled);
  bool settle(Place& place, Slots& slots);
  bool belongsElsewhere(const Place& place);
  bool followAll(const Place& place, const Slots& slots, Marks* marks);
  bool followMarking(const Place& place, const Slots& slots, Marks* marks);

  // References.
  bool followReference(const Place& place, json_object* reference, Marks* marks);
  bool followDynamic(const Place& place, json_object* reference, Marks* marks);
  Target recursiveTarget(const Place& place, json_object* reference);
  Target dynamicTarget(const Place& place, json_object* reference);
  bool enterTarget(const Place& place, const Target& target, json_object* reference, Id via,
                   Marks* marks);

  // Combinations.
  bool followCombinations(const Place& place, const Slots& slots, Marks* marks);
  bool all(const Place& place, json_object* schemas, Marks* marks);
  bool any(const Place& place, json_object* schemas, Marks* marks);
  bool one(const Place& place, json_object* schemas, Marks* marks);
  bool negated(const Place& place, json_object* schema);
  bool conditional(const Place& place, const Slots& slots, Marks* marks);
  bool holds(const Place& place, json_object* schema, Id via, Marks* marks);
  bool trial(const Place& place, json_object* schema, Id via, Marks* marks);
  bool markingTrial(const Place& place, json_object* schema, Id via, Marks* marks);

  // Objects.
  bool followObject(const Place& place, const Slots& slots, Marks* marks);
  bool members(const Place& place, const Slots& slots, Marks* marks);
  bool patternMembers(const Place& place, json_object* patterns, lh_entry* entry, bool* seen);
  bool memberConforms(const Place& place, json_object* schema, lh_entry* entry, Id via);
  bool names(const Place& place, json_object* schema);
  bool dependencies(const Place& place, json_object* dependencies, Id via, Marks* marks);
  bool dependency(const Place& place, json_object* value, Id via, Marks* marks);
  bool unevaluatedMembers(const Place& place, json_object* schema, const Marks& marks);

  // Arrays.
  bool followArray(const Place& place, const Slots& slots, Marks* marks);
  bool items(const Place& place, const Slots& slots, Marks* marks);
  bool elementConforms(const Place& place, json_object* schema, size_t i, Id via);
  bool contains(const Place& place, const Slots& slots, Marks* marks);
  bool unevaluatedElements(const Place& place, json_object* schema, const Marks& marks);

  // Failures. Each answers whether the walk goes on all the same; stop() never does.
  bool fail(const Place& place, Id keyword, json_object* value);
  bool stop(const Place& place, Id keyword, json_object* value, Trouble trouble);
  bool failAlternatives(const Place& place, Id keyword, json_object* schemas);
  bool failCount(const Place& place, Id keyword, json_object* value, size_t count);
  bool failMissing(const Place& place, Id keyword, json_object* value);
  bool failMissingOf(const Place& place, Id keyword, json_object* names, const char* needer);
  bool wantsReport() const;
  bool report(const Place& place, Id keyword, json_object* value, std::string message,
              const char* member = "");
  bool tell(const Place& place);
  std::string ruleLocation(const Place& place, Id keyword, json_object* value);

  Effort& effort() { return workshop_.effort; }
  [[nodiscard]] Draft draftAt(const Place& place) const {
    return resources_.at(place.resource).draft;
  }

  Workshop workshop_;
  Resources resources_;
  Audience& audience_;
  Violation violation_;      // the last one reported
  Effort telling_;           // what may be spent on finding words
  unsigned quiet_ = 0;       // trials around the walk, whose failures are not the answer
  unsigned explaining_ = 0;  // alternatives around the walk, of which only the sentence is wanted
  unsigned deepest_ = 0;     // how deep in the instance the reported violation is
  bool isFinal_ = false;     // what was reported stopped the validation
  bool violates_ = false;    // a violation was told
  uintptr_t stack_ = 0;      // where it was when the walk began
};

}  // namespace schema
}  // namespace hearth

#endif
