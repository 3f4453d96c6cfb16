// What the walk does when a rule fails. Nothing is written unless somebody wants to hear of it, and
// nothing for the failure of a trial, which is no violation. A reason that stops the whole
// validation is always told, and is the last one.
#include <new>
#include <utility>

#include "schema/describe.h"
#include "schema/members.h"
#include "schema/pointer.h"
#include "schema/text.h"
#include "schema/walker.h"

namespace hearth {
namespace schema {
namespace {

// Written from its end, to need no stack for the way.
std::string instancePointer(const Place& place) {
  std::string pointer;
  for (const Place* on = &place; on; on = on->outer) {
    std::string step;
    if (on->member) {
      addToPointer(&step, on->member);
    } else if (on->element != Place::kNoElement) {
      step = joined({"/", decimal(on->element)});
    }
    pointer = joined({step, pointer});
  }
  return pointer;
}

unsigned instanceDepth(const Place& place) {
  unsigned depth = 0;
  for (const Place* on = &place; on; on = on->outer) {
    depth += on->member || on->element != Place::kNoElement;
  }
  return depth;
}

// The member whose name the rule is about, if it is about one.
const char* nameRefused(const Place& place) {
  for (const Place* on = &place; on; on = on->outer) {
    if (on->via == Id::kPropertyNames) {
      return json_object_get_string(on->instance);
    }
  }
  return "";
}

bool asksForMembers(Id keyword) {
  return keyword == Id::kRequired || keyword == Id::kDependentRequired ||
         keyword == Id::kDependencies;
}

}  // namespace

bool Walker::wantsReport() const {
  return audience_.limit > 0 && quiet_ == 0 && !isFinal_;
}

bool Walker::fail(const Place& place, Id keyword, json_object* value) {
  if (workshop_.effort.stopped()) {
    return stop(place, keyword, value, workshop_.effort.trouble());
  }
  if (!wantsReport()) {
    return false;
  }
  if (asksForMembers(keyword) && value != place.schema) {
    return failMissing(place, keyword, value);
  }
  return report(place, keyword, value,
                value == place.schema ? "is not allowed here"
                                      : describeFailure(place.instance, keyword, value,
                                                        place.schema, draftAt(place), telling_));
}

bool Walker::stop(const Place& place, Id keyword, json_object* value, Trouble trouble) {
  workshop_.effort.stop(trouble);
  if (audience_.limit > 0 && !isFinal_) {
    isFinal_ = true;
    report(place, keyword, value, describeTrouble(workshop_.effort.trouble(), keyword, value));
  }
  return false;
}

bool Walker::failCount(const Place& place, Id keyword, json_object* value, size_t count) {
  return wantsReport() && report(place, keyword, value, describeCount(count, keyword, value));
}

// A list of names, or lists under the names of the members that need them.
bool Walker::failMissing(const Place& place, Id keyword, json_object* value) {
  if (json_object_get_type(value) == json_type_array) {
    return failMissingOf(place, keyword, value, nullptr);
  }
  json_object_object_foreach(value, needer, names) {
    if (json_object_object_get_ex(place.instance, needer, nullptr) &&
        !failMissingOf(place, keyword, names, needer)) {
      return false;
    }
  }
  return true;
}

// The walk found the first name that is missing; those behind it were not looked at.
bool Walker::failMissingOf(const Place& place, Id keyword, json_object* names, const char* needer) {
  if (json_object_get_type(names) != json_type_array) {
    return stop(place, keyword, names, Trouble::kBadValue);
  }
  for (size_t i = 0; i < json_object_array_length(names); ++i) {
    json_object* const name = json_object_array_get_idx(names, i);
    if (json_object_get_type(name) != json_type_string) {
      return stop(place, keyword, names, Trouble::kBadValue);
    }
    const char* const text = json_object_get_string(name);
    if (!effort().spend(1 + costOfName(text))) {
      return fail(place, keyword, names);
    }
    if (!json_object_object_get_ex(place.instance, text, nullptr) &&
        !report(place, keyword, names, describeMissing(text, keyword, needer), text)) {
      return false;
    }
  }
  return true;
}

// No alternative matched: the one whose failure lies deepest in the instance is likely the one that
// was meant, and its reason is worth telling.
bool Walker::failAlternatives(const Place& place, Id keyword, json_object* schemas) {
  if (!wantsReport()) {
    return false;
  }
  std::string closest;
  unsigned closestDepth = 0;
  const size_t count = json_object_array_length(schemas);
  ++explaining_;
  for (size_t i = 0; i < count && !effort().stopped(); ++i) {
    deepest_ = 0;
    if (!holds(place, json_object_array_get_idx(schemas, i), keyword, nullptr) &&
        (i == 0 || deepest_ > closestDepth)) {
      closest = describeClosest(i + 1, violation_.instanceLocation, violation_.message);
      closestDepth = deepest_;
    }
  }
  --explaining_;
  return !isFinal_ &&
         report(place, keyword, schemas,
                joined({"must match ", keyword == Id::kOneOf ? "exactly" : "at least", " one of ",
                        decimal(count), " alternatives, but matches none", closest}));
}

// Writes the violation down, and tells it unless it is an alternative's.
bool Walker::report(const Place& place, Id keyword, json_object* value, std::string message,
                    const char* member) {
  violation_.instanceLocation = instancePointer(place);
  violation_.keyword = nameOf(keyword);
  violation_.message = std::move(message);
  violation_.member = *member ? member : nameRefused(place);
  deepest_ = instanceDepth(place);
  if (explaining_ > 0 && !isFinal_) {
    return false;
  }
  violation_.schemaLocation = ruleLocation(place, keyword, value);
  return tell(place);
}

// Telling thousands of violations costs more than finding them: it has a budget of its own, so that
// the first one is told however hard it was to find.
bool Walker::tell(const Place& place) {
  constexpr size_t kPrice = 64;
  const bool isPaid = telling_.spend(kPrice + violation_.instanceLocation.size() +
                                     violation_.schemaLocation.size() + violation_.message.size());
  violates_ = true;
  --audience_.limit;
  if (!audience_.found(audience_.context, violation_)) {
    audience_.limit = 0;
  }
  return wantsReport() && (isPaid || stop(place, Id::kNone, nullptr, Trouble::kTooMuchWork));
}

std::string Walker::ruleLocation(const Place& place, Id keyword, json_object* value) {
  json_object* top = nullptr;
  std::string location;
  const std::string document = resources_.documentOf(place.resource, &top);
  if (locate(top, place.schema, telling_, &location) && value != place.schema &&
      keyword != Id::kNone) {
    json_object* own = nullptr;
    if (json_object_object_get_ex(place.schema, nameOf(keyword), &own)) {
      addToPointer(&location, nameOf(keyword));
    }
  }
  return document.empty() ? location : joined({document, "#", location});
}

}  // namespace schema
}  // namespace hearth
