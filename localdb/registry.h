// Which handler a session key names.
#ifndef HEARTH_LOCALDB_REGISTRY_H
#define HEARTH_LOCALDB_REGISTRY_H

#include "localdb/handler_record.h"

namespace hearth {

// A use of the handler that LocalDbCtrl::getDBByKey answers, logging what that logs. Null when
// there is none.
[[nodiscard]] HandlerUse useHandler(const char* sessionKey);

}  // namespace hearth

#endif
