// The walk over an instance and its schema at once. A schema is looked at in two steps: its members
// are read once, and what concerns the instance alone is checked on the spot; what leads to other
// schemas waits until all members are known, since some of it depends on its neighbours. Nothing is
// compiled beforehand and nothing is allocated on the way.
#ifndef HEARTH_SCHEMA_WALK_WALKER_H
#define HEARTH_SCHEMA_WALK_WALKER_H

#include <json-c/json.h>

#include <cstdint>

#include "schema/effort.h"
#include "schema/keywords/assertions.h"
#include "schema/keywords/keywords.h"
#include "schema/resource/resources.h"
#include "schema/validate.h"
#include "schema/walk/frame.h"
#include "schema/walk/marks.h"
#include "schema/walk/pending.h"
#include "schema/walk/report.h"

namespace hearth::schema {

// Holds what one validation needs and asks the one question that everything comes down to,
// conforms(). The questions of single keywords are in questions.h and come back to it for the
// schemas below.
//
// Each question answers as far as the walk is to know: a failure that was told, and behind which
// the audience wants more, counts as none, so that the walk goes on.
class Walker {
 public:
  Walker(json_object* schema, Draft unnamed, Audience& audience)
      : resources_(schema, unnamed, workshop_.effort),
        report_(audience, workshop_.effort, resources_) {}

  [[nodiscard]] Conformance run(json_object* instance);

  // True when the frame's instance conforms to its schema. With marks, also marks what of the
  // instance was looked at. Moves the frame into the resource that its schema starts.
  [[nodiscard]] bool conforms(Frame& frame, Marks* marks);

  // The same for the frame's instance and another schema, to which the keyword led.
  [[nodiscard]] bool conformsTo(const Frame& frame, json_object* schema, Id via, Marks* marks);

  // For the questions of single keywords.
  Workshop& workshop() { return workshop_; }
  Effort& effort() { return workshop_.effort; }
  Resources& resources() { return resources_; }
  Report& report() { return report_; }
  [[nodiscard]] Draft draftAt(const Frame& frame) const {
    return resources_.at(frame.resource).draft;
  }

 private:
  enum class Reading { kDone, kFailed, kAgain };

  bool mayEnter(const Frame& frame);
  bool readSchema(Frame& frame, Pending& pending);
  Reading readMembers(Frame& frame, Pending& pending, bool isSettled);
  bool satisfiesNow(const Frame& frame, const Keyword& keyword, json_object* value, Draft draft);
  Reading refuse(const Frame& frame, const Keyword& keyword, json_object* value, bool isSettled);
  bool movesElsewhere(const Frame& frame);
  json_object* soleReference(const Frame& frame) const;
  bool conformsToPending(const Frame& frame, const Pending& pending, Marks* marks);
  bool conformsToUnevaluated(const Frame& frame, const Pending& pending, Marks* marks);

  Workshop workshop_;
  Resources resources_;
  Report report_;
  uintptr_t stack_ = 0;  // where the stack was when the walk began
};

}  // namespace hearth::schema

#endif
