#include "localdb/session_handler.h"

#include "localdb/slot.h"
#include "log/library_log.h"

namespace hearth {

Face::~Face() {
  destructSlots(face);
}

HandlerUse SessionHandler::use() {
  users.fetch_add(1, std::memory_order_relaxed);
  return HandlerUse(this);
}

void EndUse::operator()(SessionHandler* handler) const {
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
