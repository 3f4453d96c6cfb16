// The walk through the keywords that combine schemas for one and the same value.
//
// A schema of "allOf", "then" or "else" has to hold: its failure is a violation. One of "anyOf",
// "oneOf", "not" or "if" is only tried: its failure is told to nobody, and what it marked on the
// way counts only if it holds.
#include "schema/describe.h"
#include "schema/text.h"
#include "schema/walk/questions.h"

namespace hearth::schema {
namespace {

// Tries a schema with marks of its own, which join the others when it holds. They may be many, so
// making them is paid for.
bool conformsOnTrialMarking(Walker& walker, const Frame& frame, json_object* schema, Id via,
                            Marks& marks) {
  if (!walker.effort().spend(marks.wordCount())) {
    return walker.report().fail(frame, via, nullptr);
  }
  Marks own = marks.withoutMarks();
  walker.report().beginTrial();
  const bool conforms = walker.conformsTo(frame, schema, via, &own);
  walker.report().endTrial();
  if (conforms) {
    marks.add(own);
  }
  return conforms;
}

bool conformsOnTrial(Walker& walker, const Frame& frame, json_object* schema, Id via,
                     Marks* marks) {
  if (marks != nullptr) {
    return conformsOnTrialMarking(walker, frame, schema, via, *marks);
  }
  walker.report().beginTrial();
  const bool conforms = walker.conformsTo(frame, schema, via, nullptr);
  walker.report().endTrial();
  return conforms;
}

// Tells that no alternative matched. The one whose failure lies deepest in the instance is likely
// the one that was meant, so all are walked once more to find out why that one failed.
bool failAlternatives(Walker& walker, const Frame& frame, Id keyword, json_object* schemas) {
  Report& report = walker.report();
  if (!report.isWanted()) {
    return false;
  }
  std::string closest;
  unsigned closestDepth = 0;
  const std::size_t count = json_object_array_length(schemas);
  report.beginExplaining();
  for (std::size_t i = 0; i < count && !walker.effort().isStopped(); ++i) {
    report.forgetDepth();
    if (!walker.conformsTo(frame, json_object_array_get_idx(schemas, i), keyword, nullptr) &&
        (i == 0 || report.depth() > closestDepth)) {
      closest = describeClosest(i + 1, report.last().instanceLocation, report.last().message);
      closestDepth = report.depth();
    }
  }
  report.endExplaining();
  return !report.isFinal() &&
         report.failSaying(
             frame, keyword, schemas,
             joined({"must match ", keyword == Id::kOneOf ? "exactly" : "at least", " one of ",
                     decimal(count), " alternatives, but matches none", closest}));
}

// Ends at the first failure behind which nobody wants to hear more; a told one counts as none.
bool conformsToAll(Walker& walker, const Frame& frame, json_object* schemas, Marks* marks) {
  const std::size_t count = json_object_array_length(schemas);
  for (std::size_t i = 0; i < count; ++i) {
    if (!walker.conformsTo(frame, json_object_array_get_idx(schemas, i), Id::kAllOf, marks)) {
      return false;
    }
  }
  return true;
}

// One match is enough, unless marks are kept: then every match adds its own.
bool conformsToAny(Walker& walker, const Frame& frame, json_object* schemas, Marks* marks) {
  const Effort& effort = walker.effort();
  const std::size_t count = json_object_array_length(schemas);
  bool matched = false;
  for (std::size_t i = 0; i < count && !effort.isStopped() && (!matched || marks != nullptr); ++i) {
    json_object* const schema = json_object_array_get_idx(schemas, i);
    matched |= conformsOnTrial(walker, frame, schema, Id::kAnyOf, marks);
  }
  return !effort.isStopped() && (matched || failAlternatives(walker, frame, Id::kAnyOf, schemas));
}

// A second match decides: the rest is not tried.
bool conformsToOne(Walker& walker, const Frame& frame, json_object* schemas, Marks* marks) {
  const Effort& effort = walker.effort();
  const std::size_t count = json_object_array_length(schemas);
  std::size_t matched = 0;
  for (std::size_t i = 0; i < count && !effort.isStopped() && matched < 2; ++i) {
    json_object* const schema = json_object_array_get_idx(schemas, i);
    matched += conformsOnTrial(walker, frame, schema, Id::kOneOf, marks);
  }
  if (effort.isStopped() || matched == 1) {
    return !effort.isStopped();
  }
  return matched == 0 ? failAlternatives(walker, frame, Id::kOneOf, schemas)
                      : walker.report().fail(frame, Id::kOneOf, schemas);
}

// What the schema of "not" looks at is not marked: it holds only where that schema does not.
bool conformsToNot(Walker& walker, const Frame& frame, json_object* schema) {
  const bool matched = conformsOnTrial(walker, frame, schema, Id::kNot, nullptr);
  return !walker.effort().isStopped() &&
         (!matched || walker.report().fail(frame, Id::kNot, schema));
}

// "if" decides which of "then" and "else" has to hold; one that is missing holds. Without "if" the
// two mean nothing, so this is not asked.
bool conformsToBranch(Walker& walker, const Frame& frame, const Pending& pending, Marks* marks) {
  const bool matched = conformsOnTrial(walker, frame, pending[Turn::kIf], Id::kIf, marks);
  const Turn branch = matched ? Turn::kThen : Turn::kElse;
  if (walker.effort().isStopped() || !pending.has(branch)) {
    return !walker.effort().isStopped();
  }
  return walker.conformsTo(frame, pending[branch], matched ? Id::kThen : Id::kElse, marks);
}

}  // namespace

bool conformsToCombinations(Walker& walker, const Frame& frame, const Pending& pending,
                            Marks* marks) {
  if (pending.has(Turn::kAllOf) && !conformsToAll(walker, frame, pending[Turn::kAllOf], marks)) {
    return false;
  }
  if (pending.has(Turn::kAnyOf) && !conformsToAny(walker, frame, pending[Turn::kAnyOf], marks)) {
    return false;
  }
  if (pending.has(Turn::kOneOf) && !conformsToOne(walker, frame, pending[Turn::kOneOf], marks)) {
    return false;
  }
  if (pending.has(Turn::kNot) && !conformsToNot(walker, frame, pending[Turn::kNot])) {
    return false;
  }
  return !pending.has(Turn::kIf) || conformsToBranch(walker, frame, pending, marks);
}

}  // namespace hearth::schema
