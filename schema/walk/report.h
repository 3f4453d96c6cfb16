// What the walk tells of rules that fail.
#ifndef HEARTH_SCHEMA_WALK_REPORT_H
#define HEARTH_SCHEMA_WALK_REPORT_H

#include <cstddef>
#include <string>

#include "schema/effort.h"
#include "schema/resource/resources.h"
#include "schema/validate.h"
#include "schema/walk/frame.h"

namespace hearth::schema {

// Tells the audience of violations, and answers after each one if the walk goes on all the same: it
// does while the audience wants more. Three things are told differently:
//   - A failure inside a trial (anyOf, not, if, contains) is no violation: nothing is told.
//   - While an alternative is explained, its failure is written down and not told.
//   - A reason that stops the whole validation is always told, trial or not, and is the last one.
class Report {
 public:
  // Counts the audience's limit down as it tells.
  Report(Audience& audience, Effort& effort, const Resources& resources)
      : audience_(audience), effort_(effort), resources_(resources) {}

  // The keyword with this value in the frame's schema refuses the frame's instance. Where the value
  // is the schema itself, it is "false". When the effort was stopped meanwhile, that is told
  // instead, and the walk does not go on.
  [[nodiscard]] bool fail(const Frame& frame, Id keyword, json_object* value);

  // The same for a keyword that bounds how many elements match "contains".
  [[nodiscard]] bool failCount(const Frame& frame, Id keyword, json_object* value,
                               std::size_t count);

  // The same in words of the caller's, and with the member that is missing, if one is.
  [[nodiscard]] bool failSaying(const Frame& frame, Id keyword, json_object* value,
                                std::string message, const char* member = "");

  // The validation cannot be finished: stops the effort, tells why, and answers false.
  bool stop(const Frame& frame, Id keyword, json_object* value, Trouble trouble);

  // False when nobody wants to hear of a failure here.
  [[nodiscard]] bool isWanted() const { return audience_.limit > 0 && trials_ == 0 && !isFinal_; }

  [[nodiscard]] bool hasViolations() const { return hasViolations_; }

  // Around the trial of a schema, whose failure is not the answer.
  void beginTrial() { ++trials_; }
  void endTrial() { --trials_; }

  // Around the explanation of alternatives: what was wrong with the last one, and how deep in the
  // instance (0 when nothing was).
  void beginExplaining() { ++explaining_; }
  void endExplaining() { --explaining_; }
  void forgetDepth() { depth_ = 0; }
  [[nodiscard]] unsigned depth() const { return depth_; }
  [[nodiscard]] const Violation& last() const { return violation_; }
  [[nodiscard]] bool isFinal() const { return isFinal_; }

 private:
  bool failMissing(const Frame& frame, Id keyword, json_object* value);
  bool failMissingOf(const Frame& frame, Id keyword, json_object* names, const char* needer);
  bool tell(const Frame& frame);
  std::string ruleLocation(const Frame& frame, Id keyword, json_object* value);

  Audience& audience_;
  Effort& effort_;
  const Resources& resources_;
  Violation violation_;      // the last one written down
  Effort telling_;           // what may be spent on finding words
  unsigned trials_ = 0;      // around the walk
  unsigned explaining_ = 0;  // alternatives around the walk, of which only the sentence is wanted
  unsigned depth_ = 0;       // how deep in the instance violation_ is
  bool isFinal_ = false;     // what was written down stopped the validation
  bool hasViolations_ = false;
};

}  // namespace hearth::schema

#endif
