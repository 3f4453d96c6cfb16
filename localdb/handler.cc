// A handler's beginning and end.
#include "localdb/handler.h"

#include "localdb/handler_record.h"
#include "log/log.h"

namespace hearth {

void emptyHandler(LOCALDB_HANDLER& handler, Waiting waiting) {
  HEARTH_LOG(LOG_DEBUG, "Local DB handler destructor\n");
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    Slot(handler, area).empty(waiting);
  }
}

}  // namespace hearth

LOCALDB_HANDLER::LOCALDB_HANDLER() {
  for (unsigned int area = 0; area < hearth::kAreaCount; ++area) {
    hearth::Slot(*this, area).construct();
  }
  hearth::addRecord(*this);
  HEARTH_LOG(LOG_DEBUG, "Local DB handler constructor\n");
}

// The registry has emptied its handlers before their last user comes here.
LOCALDB_HANDLER::~LOCALDB_HANDLER() {
  const auto record = hearth::takeRecord(*this);
  if (record == nullptr || !record->emptied) {
    hearth::emptyHandler(*this, hearth::Waiting::kForHolder);
  }
  for (unsigned int area = 0; area < hearth::kAreaCount; ++area) {
    hearth::Slot(*this, area).destruct();
  }
}
