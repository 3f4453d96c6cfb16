// Reading and changing the areas' databases for a request.
#ifndef HEARTH_EXAMPLES_GATEWAYD_AREAS_H
#define HEARTH_EXAMPLES_GATEWAYD_AREAS_H

#include <hearth/kit.h>

#include <string>
#include <vector>

struct Answer {
  int status;           // of HTTP
  std::string value;    // JSON text of the value, without secrets; empty where there is none
  std::string problem;  // for a person, where the status is a failure
};

enum class Action { kReplace, kMerge, kRemove };

struct Wanted {
  Action action;
  std::vector<std::string> segments;
  hearth::View value;  // nothing for null, and where there is none
};

Answer readValue(API_TYPE_T area, const std::vector<std::string>& segments,
                 const hearth::Session& session);
Answer changeValue(API_TYPE_T area, const Wanted& wanted, const hearth::Session& session);

#endif
