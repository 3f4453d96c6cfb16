// The holds of the calling thread.
//
// A slot's holder is a thread, and only that thread ever asks whether it is one. So each thread
// keeps its own list, newest hold first, and nothing about holders is shared between threads.
#ifndef HEARTH_LOCALDB_HOLDS_H
#define HEARTH_LOCALDB_HOLDS_H

#include "localdb/session_handler.h"

namespace hearth {

// Writes the key under which a slot is being locked into the slot's hold. Requires the slot's
// mutex. False when there is no memory for the key.
[[nodiscard]] bool noteKey(Hold& hold, const char* sessionKey);

// Enters this thread's hold on the slot that it has just locked. The handler stays alive until the
// hold ends.
void keepHold(Lookup found, unsigned int area);

// This thread's hold on a handler's slot; null when it has none.
[[nodiscard]] Hold* findHold(const SessionHandler* handler, unsigned int area);

// This thread's newest hold on a slot of this area that it locked under the key, whatever handler
// the key names now; null when it has none.
[[nodiscard]] Hold* findHoldUnder(const char* sessionKey, unsigned int area);

// Takes the hold out of the list and hands over its handler.
[[nodiscard]] HandlerRef endHold(Hold& hold);

}  // namespace hearth

#endif
