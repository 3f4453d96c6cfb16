// Reading and changing the areas' databases for a request.
//
// A read locks the area in the session's handler, copies the value and unlocks. A change holds the
// area's turn, so that the sessions' handlers, which share the files, change them one after the
// other; tries the change on a copy; lets the checks see it; and only then makes and saves it.
#ifndef HEARTH_EXAMPLES_GATEWAYD_AREAS_H
#define HEARTH_EXAMPLES_GATEWAYD_AREAS_H

#include <mutex>
#include <string>
#include <vector>

#include "examples/backend.h"
#include "examples/gatewayd/sessions.h"

enum class Outcome {
  kDone,
  kMade,       // a value that was not there before
  kNotFound,   // nothing is at the path
  kForbidden,  // the path names a secret
  kWrongType,  // the change does not fit what is there
  kRefused,    // a schema does not allow the result
  kHeld,       // another request holds the area
  kBroken      // no database to work on, or it could not be saved
};

struct Answer {
  Outcome outcome;
  std::string value;    // JSON text of the value, without secrets; empty where there is none
  std::string problem;  // for a person, where the outcome is a failure
};

enum class Action { kReplace, kMerge, kRemove };

struct Change {
  Action action;
  std::vector<std::string> segments;
  json_object* value;  // borrowed; null when there is none
};

class Areas {
 public:
  Answer read(API_TYPE_T area, const std::vector<std::string>& segments, Databases& databases);
  Answer change(API_TYPE_T area, const Change& change, Databases& databases);

 private:
  std::mutex turns_[8];
};

#endif
