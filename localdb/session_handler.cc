// The life of a handler: its references, and the two public operations that make one that stands
// alone, outside the registry.
#include "localdb/session_handler.h"

#include "localdb/slot.h"
#include "log/library_log.h"

namespace hearth {

Face::~Face() {
  destructSlots(face);
}

HandlerRef SessionHandler::share() {
  users.fetch_add(1, std::memory_order_relaxed);
  return HandlerRef(this);
}

// Release and acquire: the last user sees all that the others have done before it frees the memory.
void DropHandler::operator()(SessionHandler* handler) const {
  if (handler->users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete handler;
  }
}

}  // namespace hearth

LOCALDB_HANDLER::LOCALDB_HANDLER() {
  hearth::constructSlots(*this);
  HEARTH_LOG(LOG_DEBUG, "Local DB handler constructor\n");
}

LOCALDB_HANDLER::~LOCALDB_HANDLER() {
  HEARTH_LOG(LOG_DEBUG, "Local DB handler destructor\n");
  hearth::destructSlots(*this);
}
