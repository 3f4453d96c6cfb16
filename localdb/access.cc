// Lock, save and unlock: which handler and which hold an operation is about. What then happens to
// the slot is slot.cc's.
#include <utility>

#include "json/status.h"
#include "localdb/holds.h"
#include "localdb/registry.h"
#include "localdb/slot.h"
#include "log/log.h"

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

TreeMapObject* lockSlot(HandlerUse use, unsigned int area, const char* path,
                        const char* sessionKey) {
  const Slot slot(*use->handler, area);
  HEARTH_LOG(LOG_DEBUG, "%s: start state=%d\n", kLock, static_cast<int>(slot.state()));
  if (!slot.enter()) {
    HEARTH_LOG(LOG_WARNING, "%s: failed to access local database (%d) in writing state\n", kLock,
               static_cast<int>(area));
    return nullptr;
  }
  const bool hasKey = use->holds[area].writeKey(sessionKey);
  if (!hasKey) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the session key\n", kLock);
  }
  TreeMapObject* const object = hasKey ? slot.open(path) : nullptr;
  if (object == nullptr) {
    slot.leave();
    return nullptr;
  }
  slot.markLocked();
  keepHold(std::move(use), area);
  return object;
}

// This thread's hold that a save or unlock under the key is about: the one on the handler that the
// key names now, else the one that it took under the key when that named another handler.
Hold* findHoldToEnd(const HandlerUse& named, const char* sessionKey, unsigned int area) {
  Hold* const hold = named != nullptr ? findHold(named->handler, area) : nullptr;
  return hold != nullptr ? hold : findHoldUnder(sessionKey, area);
}

// Ends this thread's lock; finish then decides about the database, with the mutex given back.
template <typename Finish>
int endLock(const Ending& ending, unsigned int area, const char* sessionKey, Finish finish) {
  if (!isArea(area, ending.operation)) {
    return kFailure;
  }
  HandlerUse use = useHandler(sessionKey);
  Hold* const hold = findHoldToEnd(use, sessionKey, area);
  if (hold != nullptr) {
    use = endHold(*hold);
  } else if (use == nullptr) {
    logNoHandler(ending.operation);
    return kFailure;
  }
  const Slot slot(*use->handler, area);
  HEARTH_LOG(LOG_DEBUG, "%s: apiT=%d state=%d\n", ending.operation, static_cast<int>(area),
             static_cast<int>(slot.state()));
  if (hold == nullptr) {
    HEARTH_LOG(ending.notLocked, "%s: I am not in locked state\n", ending.operation);
    return kFailure;
  }
  slot.leave();
  return slot.isLockedDatabase(ending) ? finish(slot) : kFailure;
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
  hearth::HandlerUse use = hearth::useHandler(sessionKey);
  if (use == nullptr) {
    hearth::logNoHandler(hearth::kLock);
    return nullptr;
  }
  return hearth::lockSlot(std::move(use), apiT, path, sessionKey);
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
