// The walk's own steps: entering a schema, reading its members, and turning to those that wait.
//
// The difficulty is in the reading. The members of a schema come in any order, but three of them
// change what the others mean: $id and $schema start a resource of its own, perhaps in another
// draft, and up to draft-07 a $ref makes everything beside it void. Looking for these three in
// every schema would cost as much as the walk, so the members are read as if there were none. Only
// when one of them turns up, or a rule fails that one of them might make void, are they looked for;
// if one was there, the schema is read once more, in the place where it belongs.
#include "schema/walk/walker.h"

#include "base/json_members.h"
#include "schema/walk/questions.h"

namespace hearth::schema {
namespace {

bool isDraft7OrOlder(Draft draft) {
  return draft <= Draft::k7;
}

// The vocabularies whose keywords say nothing in this resource. From 2020-12 on, a format is a
// remark unless the vocabularies say that it is a rule.
unsigned silentIn(const Resource& resource) {
  const bool isRemark =
      resource.draft == Draft::k2020 && (resource.vocabularies & kFormatAssertion) == 0;
  return ~unsigned{resource.vocabularies} | (isRemark ? unsigned{kFormatVocabulary} : 0U);
}

// These keywords may say that their schema is a resource of its own.
bool mayMoveSchema(Id id) {
  return id == Id::kId || id == Id::kSchema;
}

// An address in the current frame of the stack, which grows downwards.
uintptr_t stackNow() {
  return reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
}

std::size_t sizeOf(json_object* container) {
  return json_object_get_type(container) == json_type_object
             ? static_cast<std::size_t>(json_object_object_length(container))
             : json_object_array_length(container);
}

}  // namespace

Conformance Walker::run(json_object* instance) {
  Frame root{nullptr, resources_.at(0).top, instance, nullptr, Frame::kNoElement, 0, 0, Id::kNone};
  stack_ = stackNow();
  // Reading the schema's identifiers may have stopped the effort before the walk begins.
  const bool conform = effort().isStopped()
                           ? report_.stop(root, Id::kSchema, nullptr, effort().trouble())
                           : conforms(root, nullptr);
  if (effort().isStopped()) {
    return isOfSchema(effort().trouble()) ? Conformance::kUnusable : Conformance::kExhausted;
  }
  return conform && !report_.hasViolations() ? Conformance::kConforms : Conformance::kViolates;
}

bool Walker::mayEnter(const Frame& frame) {
  if (frame.depth < kMaxDepth && stack_ - stackNow() < kMaxStack) {
    return effort().spend(1) || report_.fail(frame, Id::kNone, nullptr);
  }
  // Too deep, or going round in a circle: the same schema for the same value, on the way here.
  for (const Frame* outer = frame.outer; outer != nullptr; outer = outer->outer) {
    if (outer->schema == frame.schema && outer->instance == frame.instance) {
      return report_.stop(frame, frame.via, nullptr, Trouble::kEndless);
    }
  }
  return report_.stop(frame, frame.via, nullptr, Trouble::kTooDeep);
}

bool Walker::conforms(Frame& frame, Marks* marks) {
  if (!mayEnter(frame)) {
    return false;
  }
  const json_type type = json_object_get_type(frame.schema);
  if (type == json_type_boolean) {
    return json_object_get_boolean(frame.schema) || report_.fail(frame, frame.via, frame.schema);
  }
  if (type != json_type_object) {
    return report_.stop(frame, frame.via, frame.schema, Trouble::kBadSchema);
  }
  Pending pending;
  if (!readSchema(frame, pending)) {
    return false;
  }
  if (pending.isEmpty()) {
    return true;
  }
  return pending.has(Turn::kUnevaluated) ? conformsToUnevaluated(frame, pending, marks)
                                         : conformsToPending(frame, pending, marks);
}

bool Walker::conformsTo(const Frame& frame, json_object* schema, Id via, Marks* marks) {
  Frame next = frame.forSchema(schema, via);
  return conforms(next, marks);
}

// Reads the members, and once more if the schema turns out to belong elsewhere. The first reading
// has told nothing then: refuse() asks where the schema belongs before it tells.
bool Walker::readSchema(Frame& frame, Pending& pending) {
  Reading reading = readMembers(frame, pending, false);
  if (reading == Reading::kAgain) {
    pending.clear();
    reading = readMembers(frame, pending, true);
  }
  return reading == Reading::kDone;
}

// Reads the members of the frame's schema once: checks what concerns the instance alone, and keeps
// what waits. Once it is settled which resource the schema belongs to, it is not asked again.
Walker::Reading Walker::readMembers(Frame& frame, Pending& pending, bool isSettled) {
  if (isSettled) {
    frame.resource = resources_.of(frame.schema, frame.resource);
    if (json_object* const reference = soleReference(frame); reference != nullptr) {
      pending.add(Turn::kRef, reference);
      return Reading::kDone;
    }
  }
  const Draft draft = draftAt(frame);
  const unsigned silent = silentIn(resources_.at(frame.resource));
  const unsigned instanceBit = typeBit(frame.instance);
  lh_table* const members = json_object_get_object(frame.schema);
  if (!effort().spend(static_cast<std::size_t>(lh_table_length(members)))) {
    (void)report_.fail(frame, Id::kNone, nullptr);
    return Reading::kFailed;
  }
  for (lh_entry* entry = firstMember(members); entry != nullptr; entry = memberAfter(entry)) {
    const Keyword* const keyword = findKeyword(nameOfMember(entry), draft);
    if (keyword == nullptr || (keyword->vocabulary & silent)) {
      continue;
    }
    json_object* const value = valueOfMember(entry);
    const bool isUsable = (keyword->valueTypes & typeBit(value)) != 0;
    const bool applies = (keyword->appliesTo & instanceBit) != 0;
    if (keyword->turn == Turn::kNever) {
      // Says nothing about the instance, but perhaps where the schema belongs.
      if (!isSettled && isUsable && mayMoveSchema(keyword->id) && movesElsewhere(frame)) {
        return Reading::kAgain;
      }
    } else if (!isUsable) {
      return refuse(frame, *keyword, value, isSettled);
    } else if (keyword->turn == Turn::kNow) {
      // After a failure that was told the reading goes on.
      if (applies && !satisfiesNow(frame, *keyword, value, draft)) {
        const Reading refused = refuse(frame, *keyword, value, isSettled);
        if (refused != Reading::kDone) {
          return refused;
        }
      }
    } else if (keyword->id == Id::kRef && isDraft7OrOlder(draft)) {
      // All that stands beside it is void.
      pending.clear();
      pending.add(Turn::kRef, value);
      return Reading::kDone;
    } else if (applies) {
      pending.add(keyword->turn, value);
    }
  }
  return Reading::kDone;
}

// Takes the most frequent keyword past the switch over all of them.
bool Walker::satisfiesNow(const Frame& frame, const Keyword& keyword, json_object* value,
                          Draft draft) {
  return keyword.id == Id::kType
             ? isOfTypes(frame.instance, value, draft, effort())
             : satisfies(frame.instance, keyword, value, frame.schema, draft, workshop_);
}

// A rule failed, or the keyword's value cannot be used. Answers how the reading goes on.
Walker::Reading Walker::refuse(const Frame& frame, const Keyword& keyword, json_object* value,
                               bool isSettled) {
  if (!isSettled && movesElsewhere(frame)) {
    return Reading::kAgain;
  }
  const bool goesOn = (keyword.valueTypes & typeBit(value)) != 0
                          ? report_.fail(frame, keyword.id, value)
                          : report_.stop(frame, keyword.id, value, Trouble::kBadValue);
  return goesOn ? Reading::kDone : Reading::kFailed;
}

// True when the schema starts a resource of its own, or a reference makes its other members void.
// What they said before does not count then, not even that a value or a pattern is unusable: that
// stop is taken back. Any other one stays.
bool Walker::movesElsewhere(const Frame& frame) {
  const Trouble trouble = effort().trouble();
  if (trouble != Trouble::kNone && trouble != Trouble::kBadValue &&
      trouble != Trouble::kBadPattern) {
    return false;
  }
  effort().forget();
  if (resources_.of(frame.schema, frame.resource) != frame.resource ||
      (isDraft7OrOlder(draftAt(frame)) &&
       json_object_object_get_ex(frame.schema, "$ref", nullptr))) {
    return true;
  }
  if (trouble != Trouble::kNone) {
    effort().stop(trouble);
  }
  return false;
}

// The reference that is all that counts in the frame's schema, or null.
json_object* Walker::soleReference(const Frame& frame) const {
  json_object* reference = nullptr;
  const bool isSole = isDraft7OrOlder(draftAt(frame)) &&
                      json_object_object_get_ex(frame.schema, "$ref", &reference) &&
                      json_object_get_type(reference) == json_type_string;
  return isSole ? reference : nullptr;
}

// Turns to what waits: references first, then combinations, then what is inside the instance.
bool Walker::conformsToPending(const Frame& frame, const Pending& pending, Marks* marks) {
  if (pending.has(Turn::kRef) && !conformsToReference(*this, frame, pending[Turn::kRef], marks)) {
    return false;
  }
  if (pending.has(Turn::kDynamicRef) &&
      !conformsToDynamicReference(*this, frame, pending[Turn::kDynamicRef], marks)) {
    return false;
  }
  if (pending.hasAny(Turn::kAllOf, Turn::kElse) &&
      !conformsToCombinations(*this, frame, pending, marks)) {
    return false;
  }
  // Only keywords that apply to the instance wait, so these are of objects or of arrays.
  if (!pending.hasAny(Turn::kProperties, Turn::kDependentSchemas)) {
    return true;
  }
  return json_object_get_type(frame.instance) == json_type_object
             ? conformsAsObject(*this, frame, pending, marks)
             : conformsAsArray(*this, frame, pending, marks);
}

// The unevaluated keywords see what everything else in this schema has marked, and mark the rest
// for the schema around. A failure that was told counts as none, so what a rule of its own refused
// is marked too and not refused a second time.
bool Walker::conformsToUnevaluated(const Frame& frame, const Pending& pending, Marks* marks) {
  json_object* const schema = pending[Turn::kUnevaluated];
  Marks own(sizeOf(frame.instance));
  if (!effort().spend(own.wordCount()) || !conformsToPending(frame, pending, &own)) {
    return effort().isStopped() && report_.fail(frame, Id::kNone, nullptr);
  }
  if (marks != nullptr) {
    marks->markAll();
  }
  return json_object_get_type(frame.instance) == json_type_object
             ? unmarkedMembersConform(*this, frame, schema, own)
             : unmarkedElementsConform(*this, frame, schema, own);
}

}  // namespace hearth::schema
