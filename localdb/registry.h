// The registry answers which handler a session key names.
#ifndef HEARTH_LOCALDB_REGISTRY_H
#define HEARTH_LOCALDB_REGISTRY_H

#include "localdb/session_handler.h"

namespace hearth {

// Finds the handler that LocalDbCtrl::getDBByKey answers, and logs the lines of that operation.
[[nodiscard]] Lookup lookUp(const char* sessionKey);

// True while no key has changed hands since a lookup of that version, so that its answer holds.
[[nodiscard]] bool isCurrent(unsigned int version);

// Logs that the key, unknown or null, stands for "default".
void logFallback(const char* sessionKey);

}  // namespace hearth

#endif
