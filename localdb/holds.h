// The slots that the calling thread holds.
//
// A slot's holder is a thread, and only that thread ever asks whether it is one. So each thread
// keeps its own list, newest hold first, and nothing about holders is shared between threads.
#ifndef HEARTH_LOCALDB_HOLDS_H
#define HEARTH_LOCALDB_HOLDS_H

#include "localdb/registry.h"
#include "localdb/session_handler.h"

namespace hearth {

// Notes how the slot's handler was found. Requires the slot's mutex. False when there is no memory
// for the key.
[[nodiscard]] bool noteLookup(const Lookup& found, unsigned int area, const char* sessionKey);

// Enters the slot that this thread has just locked; the use is kept until the hold ends.
void keepHold(HandlerUse use, unsigned int area);

// This thread's hold on a handler's slot; null when it has none.
[[nodiscard]] Hold* findHold(const SessionHandler* handler, unsigned int area);

// This thread's newest hold on a slot of this area that it locked under the key, whatever handler
// the key names now; null when it has none.
[[nodiscard]] Hold* findHoldUnder(const char* sessionKey, unsigned int area);

// Takes the hold out of the list and hands back its use.
[[nodiscard]] HandlerUse endHold(Hold& hold);

}  // namespace hearth

#endif
