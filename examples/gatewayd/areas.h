// Reading and changing the areas' databases for a request.
//
// A change is made in a copy of the whole document, judged (users.h, the API's messages, the size,
// the area's schema), and saved at once or not at all. An area without a schema takes none.
#ifndef HEARTH_EXAMPLES_GATEWAYD_AREAS_H
#define HEARTH_EXAMPLES_GATEWAYD_AREAS_H

#include <hearth/kit.h>

#include <string>
#include <vector>

#include "exchange.h"
#include "users.h"

enum class Action { kReplace, kMerge, kRemove, kPatch };

struct Wanted {
  Action action;
  std::vector<std::string> segments;
  hearth::View value;  // nothing for null, and where there is none; of kPatch: its steps
};

// For whom.
struct Who {
  const hearth::Session& session;
  Role role;
};

Reply readValue(API_TYPE_T area, const std::vector<std::string>& segments,
                const hearth::Session& session);
Reply readSchema(API_TYPE_T area);
Reply changeValue(API_TYPE_T area, const Wanted& wanted, const Who& who);

#endif
