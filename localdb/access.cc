// Lock, save and unlock. A lock travels like this:
//
//   lookup   the session key names a handler, which the lookup keeps alive (registry.cc)
//   handler  the lock enters the handler's slot of the area and opens the value in it (slot.cc)
//   hold     the lookup and the key become the thread's hold on the slot (holds.cc)
//
// A save or unlock comes back the other way: it finds the thread's hold by the key, takes the
// handler out of it and settles the slot's lock. So it reaches the handler that was locked, even if
// the session has been removed or made anew since and the key names another handler now.
#include <utility>

#include "base/status.h"
#include "localdb/holds.h"
#include "localdb/registry.h"
#include "localdb/slot.h"
#include "log/library_log.h"

namespace hearth {
namespace {

constexpr char kLock[] = "lockDbObject";
constexpr LockEnd kSave = {"saveDbObject", true, LOG_DEBUG, LOG_DEBUG};
constexpr LockEnd kUnlock = {"unlockDbObject", false, LOG_WARNING, LOG_ERROR};

// False, with a line in the log, when there is no such area.
bool checkArea(unsigned int area, const char* operation) {
  if (area >= kAreaCount) {
    HEARTH_LOG(LOG_ERROR, "%s: there is no area %u\n", operation, area);
    return false;
  }
  return true;
}

void logNoHandler(const char* operation) {
  HEARTH_LOG(LOG_ERROR, "%s: there is no database handler\n", operation);
}

// Takes the last steps of a lock, with the slot's mutex in hand: the mutex stays with the hold, or
// is given back when there is no handle to return.
TreeMapObject* lockValue(const Slot& slot, Lookup found, unsigned int area, const char* path,
                         const char* sessionKey) {
  const bool isNoted = noteKey(found.handler->holds[area], sessionKey);
  if (!isNoted) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the session key\n", kLock);
  }
  TreeMapObject* const object = isNoted ? slot.open(path) : nullptr;
  if (object == nullptr) {
    slot.leave();
    return nullptr;
  }
  slot.markLocked();
  keepHold(std::move(found), area);
  return object;
}

// A session may be removed between the lookup and the slot's mutex. Nobody gets a slot of a handler
// that is being removed, so the key is looked up again then.
TreeMapObject* lockSlot(unsigned int area, const char* path, const char* sessionKey) {
  for (;;) {
    Lookup found = lookUp(sessionKey);
    if (found.handler == nullptr) {
      logNoHandler(kLock);
      return nullptr;
    }
    const Slot slot(*found.handler, area);
    HEARTH_LOG(LOG_DEBUG, "%s: start state=%d\n", kLock, static_cast<int>(slot.state()));
    if (!slot.enter()) {
      HEARTH_LOG(LOG_WARNING, "%s: failed to access local database (%d) in writing state\n", kLock,
                 static_cast<int>(area));
      return nullptr;
    }
    if (!found.handler->isRemoved.load(std::memory_order_acquire)) {
      return lockValue(slot, std::move(found), area, path, sessionKey);
    }
    slot.leave();
  }
}

// Ends the hold that a save or unlock under the key is about, and hands over its handler. It is the
// newest of those that this thread took under the key, whatever the key names now. Only a thread
// without one means the handler that the key names now, whose slot it may hold under another key.
//
// wasHeld is false when this thread has no such hold. The answer is then the handler that the key
// names, null when there is none.
//
// While the registry stays as it was, the hold knows what a lookup would find and log.
HandlerRef takeHeld(unsigned int area, const char* sessionKey, bool& wasHeld) {
  Hold* hold = findHoldUnder(sessionKey, area);
  wasHeld = hold != nullptr;
  if (hold != nullptr && isCurrent(hold->found.version)) {
    if (hold->found.isFallback) {
      logFallback(sessionKey);
    }
    return endHold(*hold);
  }
  Lookup found = lookUp(sessionKey);
  if (hold == nullptr && found.handler != nullptr) {
    hold = findHold(found.handler.get(), area);
    wasHeld = hold != nullptr;
  }
  return hold != nullptr ? endHold(*hold) : std::move(found.handler);
}

// Saves or unlocks. The hold ends in every case; the slot decides whether there is a database.
int endLock(const LockEnd& end, unsigned int area, const char* sessionKey) {
  if (!checkArea(area, end.operation)) {
    return kFailure;
  }
  bool wasHeld = false;
  const HandlerRef handler = takeHeld(area, sessionKey, wasHeld);
  if (handler == nullptr) {
    logNoHandler(end.operation);
    return kFailure;
  }
  const Slot slot(*handler, area);
  HEARTH_LOG(LOG_DEBUG, "%s: apiT=%d state=%d\n", end.operation, static_cast<int>(area),
             static_cast<int>(slot.state()));
  if (!wasHeld) {
    logNotLocked(end);
    return kFailure;
  }
  return slot.settleLock(end);
}

}  // namespace
}  // namespace hearth

TreeMapObject* LocalDbCtrl::lockDbObject(unsigned int apiT, const char* path,
                                         const char* sessionKey) {
  if (!hearth::checkArea(apiT, hearth::kLock)) {
    return nullptr;
  }
  if (path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: path is NULL\n", hearth::kLock);
    return nullptr;
  }
  return hearth::lockSlot(apiT, path, sessionKey);
}

int LocalDbCtrl::saveDbObject(API_TYPE_T apiT, const char* sessionKey) {
  return hearth::endLock(hearth::kSave, apiT, sessionKey);
}

int LocalDbCtrl::unlockDbObject(unsigned int apiT, const char* sessionKey) {
  return hearth::endLock(hearth::kUnlock, apiT, sessionKey);
}
