// Writes a violation down and tells it: where in the instance, which rule, and a sentence.
//
// Finding the words costs more than finding the failure, so nothing is written unless somebody
// wants to hear of it. The place in the instance is read off the list of frames; the place in the
// schema is searched for, since the walk keeps none.
#include "schema/walk/report.h"

#include <utility>

#include "schema/describe.h"
#include "schema/resource/pointer.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

// Written from its end, so that the way needs no stack of its own.
std::string instancePointer(const Frame& frame) {
  std::string pointer;
  for (const Frame* on = &frame; on != nullptr; on = on->outer) {
    std::string step;
    if (on->member != nullptr) {
      addToPointer(on->member, step);
    } else if (on->element != Frame::kNoElement) {
      step = joined({"/", decimal(on->element)});
    }
    pointer = joined({step, pointer});
  }
  return pointer;
}

// How many steps down in the instance the frame is; most frames are at the value of the one around.
unsigned instanceDepth(const Frame& frame) {
  unsigned depth = 0;
  for (const Frame* on = &frame; on != nullptr; on = on->outer) {
    depth += on->member != nullptr || on->element != Frame::kNoElement;
  }
  return depth;
}

// The member whose name a rule of "propertyNames" refuses; "" for any other rule.
const char* refusedName(const Frame& frame) {
  for (const Frame* on = &frame; on != nullptr; on = on->outer) {
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

bool Report::fail(const Frame& frame, Id keyword, json_object* value) {
  if (effort_.isStopped()) {
    return stop(frame, keyword, value, effort_.trouble());
  }
  if (!isWanted()) {
    return false;
  }
  if (value == frame.schema) {
    return failSaying(frame, keyword, value, "is not allowed here");
  }
  if (asksForMembers(keyword)) {
    return failMissing(frame, keyword, value);
  }
  return failSaying(frame, keyword, value,
                    describeFailure(frame.instance, keyword, value, frame.schema,
                                    resources_.at(frame.resource).draft, telling_));
}

bool Report::failCount(const Frame& frame, Id keyword, json_object* value, std::size_t count) {
  return isWanted() && failSaying(frame, keyword, value, describeCount(count, keyword, value));
}

// The reason is told even on trial, where a mere failure would not be.
bool Report::stop(const Frame& frame, Id keyword, json_object* value, Trouble trouble) {
  effort_.stop(trouble);
  if (audience_.limit > 0 && !isFinal_) {
    isFinal_ = true;
    // The first reason stays, and is the one to tell.
    (void)failSaying(frame, keyword, value, describeTrouble(effort_.trouble(), keyword, value));
  }
  return false;
}

// The value is a list of names, or holds such lists under the names of the members that need them.
bool Report::failMissing(const Frame& frame, Id keyword, json_object* value) {
  if (json_object_get_type(value) == json_type_array) {
    return failMissingOf(frame, keyword, value, nullptr);
  }
  json_object_object_foreach(value, needer, names) {
    if (json_object_object_get_ex(frame.instance, needer, nullptr) &&
        !failMissingOf(frame, keyword, names, needer)) {
      return false;
    }
  }
  return true;
}

// Tells each name of the list that is missing. The walk stopped at the first one and did not look
// at those behind it, so an unusable one may turn up here.
bool Report::failMissingOf(const Frame& frame, Id keyword, json_object* names, const char* needer) {
  if (json_object_get_type(names) != json_type_array) {
    return stop(frame, keyword, names, Trouble::kBadValue);
  }
  for (std::size_t i = 0; i < json_object_array_length(names); ++i) {
    json_object* const name = json_object_array_get_idx(names, i);
    if (json_object_get_type(name) != json_type_string) {
      return stop(frame, keyword, names, Trouble::kBadValue);
    }
    const char* const text = json_object_get_string(name);
    if (!effort_.spend(1 + costOfName(text))) {
      return fail(frame, keyword, names);
    }
    if (!json_object_object_get_ex(frame.instance, text, nullptr) &&
        !failSaying(frame, keyword, names, describeMissing(text, keyword, needer), text)) {
      return false;
    }
  }
  return true;
}

bool Report::failSaying(const Frame& frame, Id keyword, json_object* value, std::string message,
                        const char* member) {
  // These three are all that is wanted of an alternative; the place in the schema has to be
  // searched.
  violation_.instanceLocation = instancePointer(frame);
  violation_.keyword = nameOf(keyword);
  violation_.message = std::move(message);
  violation_.member = *member ? member : refusedName(frame);
  depth_ = instanceDepth(frame);
  if (explaining_ > 0 && !isFinal_) {
    return false;
  }
  violation_.schemaLocation = ruleLocation(frame, keyword, value);
  return tell(frame);
}

// Telling thousands of violations costs more than finding them: it has a budget of its own, so that
// the first one is told however hard it was to find.
bool Report::tell(const Frame& frame) {
  constexpr std::size_t kPrice = 64;
  const bool isPaid = telling_.spend(kPrice + violation_.instanceLocation.size() +
                                     violation_.schemaLocation.size() + violation_.message.size());
  hasViolations_ = true;
  --audience_.limit;
  if (!audience_.found(audience_.context, violation_)) {
    audience_.limit = 0;
  }
  return isWanted() && (isPaid || stop(frame, Id::kNone, nullptr, Trouble::kTooMuchWork));
}

// The pointer to the keyword, or to its schema where that is "false" or at fault as a whole. A stop
// on entering a schema names the keyword that led there, which is no member of it.
std::string Report::ruleLocation(const Frame& frame, Id keyword, json_object* value) {
  json_object* top = nullptr;
  std::string location;
  const std::string document = resources_.documentOf(frame.resource, top);
  if (locate(top, frame.schema, telling_, location) && value != frame.schema &&
      keyword != Id::kNone && json_object_object_get_ex(frame.schema, nameOf(keyword), nullptr)) {
    addToPointer(nameOf(keyword), location);
  }
  return document.empty() ? location : joined({document, "#", location});
}

}  // namespace hearth::schema
