// Which handler a session key names.
#ifndef HEARTH_LOCALDB_REGISTRY_H
#define HEARTH_LOCALDB_REGISTRY_H

#include "localdb/session_handler.h"

namespace hearth {

// What a key names, and since when.
struct Lookup {
  HandlerUse use;           // null when there is no handler
  bool isFallback = false;  // the key is not registered, the handler is that of "default"
  unsigned int version = 0;
};

// The handler that LocalDbCtrl::getDBByKey answers, logging what that logs.
[[nodiscard]] Lookup lookUp(const char* sessionKey);

// True while no key has changed hands since a look-up, so that its answer still holds.
[[nodiscard]] bool isCurrent(unsigned int version);

void logFallback(const char* sessionKey);

}  // namespace hearth

#endif
