// How a handler is emptied, by its removal or by its destructor.
#ifndef HEARTH_LOCALDB_HANDLER_H
#define HEARTH_LOCALDB_HANDLER_H

#include "hearth/local_db_ctrl.h"
#include "localdb/slot.h"

namespace hearth {

// Logs the handler's end and empties its slots one after the other, never two at a time.
void emptyHandler(LOCALDB_HANDLER& handler, Waiting waiting);

}  // namespace hearth

#endif
