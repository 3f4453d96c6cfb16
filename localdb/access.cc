// Lock, save and unlock: which handler and which hold an operation is about. What then happens to
// the slot is slot.cc's.
#include <utility>

#include "base/status.h"
#include "localdb/holds.h"
#include "localdb/registry.h"
#include "localdb/slot.h"
#include "log/library_log.h"

namespace hearth {
namespace {

constexpr char kLock[] = "lockDbObject";
constexpr Ending kSave = {"saveDbObject", LOG_DEBUG, LOG_DEBUG};
constexpr Ending kUnlock = {"unlockDbObject", LOG_WARNING, LOG_ERROR};

bool isArea(unsigned int area, const char* operation) {
  if (area >= kAreaCount) {
    HEARTH_LOG(LOG_ERROR, "%s: there is no area %u\n", operation, area);
    return false;
  }
  return true;
}

void logNoHandler(const char* operation) {
  HEARTH_LOG(LOG_ERROR, "%s: there is no database handler\n", operation);
}

// With the slot's mutex in hand.
TreeMapObject* openSlot(const Slot& slot, Lookup found, unsigned int area, const char* path,
                        const char* sessionKey) {
  const bool isNoted = noteLookup(found, area, sessionKey);
  if (!isNoted) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the session key\n", kLock);
  }
  TreeMapObject* const object = isNoted ? slot.open(path) : nullptr;
  if (object == nullptr) {
    slot.leave();
    return nullptr;
  }
  slot.markLocked();
  keepHold(std::move(found.use), area);
  return object;
}

// Nobody gets a slot of a handler that is being removed: whoever finds one looks its key up anew.
TreeMapObject* lockSlot(unsigned int area, const char* path, const char* sessionKey) {
  for (;;) {
    Lookup found = lookUp(sessionKey);
    if (found.use == nullptr) {
      logNoHandler(kLock);
      return nullptr;
    }
    const Slot slot(*found.use, area);
    HEARTH_LOG(LOG_DEBUG, "%s: start state=%d\n", kLock, static_cast<int>(slot.state()));
    if (!slot.enter()) {
      HEARTH_LOG(LOG_WARNING, "%s: failed to access local database (%d) in writing state\n", kLock,
                 static_cast<int>(area));
      return nullptr;
    }
    if (!found.use->isRemoved.load(std::memory_order_acquire)) {
      return openSlot(slot, std::move(found), area, path, sessionKey);
    }
    slot.leave();
  }
}

// What a save or unlock under a key is about.
struct Target {
  HandlerUse use;       // of the handler to work on; null when there is none
  bool isHeld = false;  // by this thread; its hold is ended
};

// The slot that this thread locked under the key, whatever the key names now; of several the one
// that it locked last. Only a thread that holds nothing under the key means the handler that the
// key names now, whose slot it may hold under another key.
Target findTarget(unsigned int area, const char* sessionKey) {
  Hold* hold = findHoldUnder(sessionKey, area);
  if (hold != nullptr && isCurrent(hold->version)) {
    if (hold->isFallback) {
      logFallback(sessionKey);
    }
    return {endHold(*hold), true};
  }
  Lookup found = lookUp(sessionKey);
  if (hold == nullptr && found.use != nullptr) {
    hold = findHold(found.use.get(), area);
  }
  return hold != nullptr ? Target{endHold(*hold), true} : Target{std::move(found.use), false};
}

// Ends this thread's lock; finish then decides about the database, with the mutex given back.
template <typename Finish>
int endLock(const Ending& ending, unsigned int area, const char* sessionKey, Finish finish) {
  if (!isArea(area, ending.operation)) {
    return kFailure;
  }
  const Target target = findTarget(area, sessionKey);
  if (target.use == nullptr) {
    logNoHandler(ending.operation);
    return kFailure;
  }
  const Slot slot(*target.use, area);
  HEARTH_LOG(LOG_DEBUG, "%s: apiT=%d state=%d\n", ending.operation, static_cast<int>(area),
             static_cast<int>(slot.state()));
  if (!target.isHeld) {
    HEARTH_LOG(ending.notLocked, "%s: I am not in locked state\n", ending.operation);
    return kFailure;
  }
  slot.startEnding();
  const int result = slot.isLockedDatabase(ending) ? finish(slot) : kFailure;
  slot.finishEnding();
  return result;
}

}  // namespace
}  // namespace hearth

TreeMapObject* LocalDbCtrl::lockDbObject(unsigned int apiT, const char* path,
                                         const char* sessionKey) {
  if (!hearth::isArea(apiT, hearth::kLock)) {
    return nullptr;
  }
  if (path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: path is NULL\n", hearth::kLock);
    return nullptr;
  }
  return hearth::lockSlot(apiT, path, sessionKey);
}

int LocalDbCtrl::saveDbObject(API_TYPE_T apiT, const char* sessionKey) {
  return hearth::endLock(hearth::kSave, apiT, sessionKey, [](const hearth::Slot& slot) {
    return slot.save(hearth::kSave.operation);
  });
}

int LocalDbCtrl::unlockDbObject(unsigned int apiT, const char* sessionKey) {
  return hearth::endLock(hearth::kUnlock, apiT, sessionKey,
                         [](const hearth::Slot& slot) { return slot.unlock(); });
}
