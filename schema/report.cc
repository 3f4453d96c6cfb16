// What the walk does when a rule fails. Nothing is written unless somebody asked for the violation,
// and nothing for the failure of a trial, which is no violation. A reason that stops the whole
// validation is always written, and is the last one.
#include <new>
#include <utility>

#include "schema/describe.h"
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

}  // namespace

bool Walker::wantsReport() const {
  return violation_ && quiet_ == 0 && !isFinal_;
}

bool Walker::fail(const Place& place, Id keyword, json_object* value) {
  if (workshop_.effort.stopped()) {
    return stop(place, keyword, value, workshop_.effort.trouble());
  }
  if (wantsReport()) {
    record(place, keyword, value,
           value == place.schema
               ? "is not allowed here"
               : describeFailure(place.instance, keyword, value, place.schema, draftAt(place)));
  }
  return false;
}

bool Walker::stop(const Place& place, Id keyword, json_object* value, Trouble trouble) {
  workshop_.effort.stop(trouble);
  if (violation_ && !isFinal_) {
    isFinal_ = true;
    record(place, keyword, value, describeTrouble(workshop_.effort.trouble(), keyword, value));
  }
  return false;
}

bool Walker::failCount(const Place& place, Id keyword, json_object* value, size_t count) {
  if (wantsReport()) {
    record(place, keyword, value, describeCount(count, keyword, value));
  }
  return false;
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
      const std::string& where = violation_->instanceLocation;
      closest = joined({"; the closest is number ", decimal(i + 1), ": ",
                        where.empty() ? "it" : where, " ", violation_->message});
      closestDepth = deepest_;
    }
  }
  --explaining_;
  if (isFinal_) {
    return false;
  }
  record(place, keyword, schemas,
         joined({"must match ", keyword == Id::kOneOf ? "exactly" : "at least", " one of ",
                 decimal(count), " alternatives, but matches none", closest}));
  return false;
}

void Walker::record(const Place& place, Id keyword, json_object* value, std::string message) {
  violation_->instanceLocation = instancePointer(place);
  violation_->keyword = nameOf(keyword);
  violation_->message = std::move(message);
  if (explaining_ == 0 || isFinal_) {
    violation_->schemaLocation = ruleLocation(place, keyword, value);
  }
  deepest_ = instanceDepth(place);
}

std::string Walker::ruleLocation(const Place& place, Id keyword, json_object* value) const {
  json_object* top = nullptr;
  std::string location;
  const std::string document = resources_.documentOf(place.resource, &top);
  if (locate(top, place.schema, &location) && value != place.schema && keyword != Id::kNone) {
    json_object* own = nullptr;
    if (json_object_object_get_ex(place.schema, nameOf(keyword), &own)) {
      addToPointer(&location, nameOf(keyword));
    }
  }
  return document.empty() ? location : joined({document, "#", location});
}

}  // namespace schema
}  // namespace hearth
