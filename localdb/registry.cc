// The registry of handlers by session key, and the operations on sessions.
//
// LocalDbCtrl::controllers is the registry, and registryLock guards it. All handlers in it are made
// here. What takes long happens while no key names the handler: a new session's files are loaded
// before its key is registered, and a removed one's holders are waited for after its key has gone.
// So the lock is held for moments only, and no session waits for another.
//
// Threads may use the database while the program ends and after its static objects have been
// destroyed. What they need of this file, as the registry itself, is never destroyed.
#include "localdb/registry.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

#include "base/mutex_lock.h"
#include "base/no_cancellation.h"
#include "files/replace_file.h"
#include "localdb/area.h"
#include "localdb/slot.h"
#include "log/library_log.h"

namespace hearth {
namespace {

using Controllers = std::map<std::string, LOCALDB_HANDLER*>;

constexpr char kDefaultKey[] = "default";
constexpr std::size_t kUsualKeyLength = 255;

// Guards the registry. Held for lookups and changes in memory only: never while a slot is waited
// for, a file is read or a line is logged.
pthread_mutex_t registryLock = PTHREAD_MUTEX_INITIALIZER;

// The key of the lookup under way. Its memory is reused, so that a lookup needs none; it is made in
// a room of its own, which nothing destroys. Guarded by registryLock.
alignas(std::string) unsigned char soughtKeyRoom[sizeof(std::string)];
std::string& soughtKey = *new (soughtKeyRoom) std::string;

// Goes up whenever a key may have changed hands. Written with registryLock held.
std::atomic<unsigned int> registryVersion{0};

void countChange() {
  registryVersion.fetch_add(1, std::memory_order_release);
}

// The map compares texts of type std::string. A key that fits into soughtKey is copied there and
// found in the map's order; a longer one would need memory, and is compared with one after another.
// Requires registryLock.
Controllers::iterator findEntry(const char* key) {
  Controllers& registry = LocalDbCtrl::controllers;
  const std::size_t length = std::strlen(key);
  if (length <= soughtKey.capacity()) {
    soughtKey.assign(key, length);
    return registry.find(soughtKey);
  }
  return std::find_if(registry.begin(), registry.end(),
                      [=](const Controllers::value_type& entry) { return entry.first == key; });
}

bool isRegistered(const char* key) {
  const MutexLock lock(registryLock);
  return findEntry(key) != LocalDbCtrl::controllers.end();
}

// The key's entry, taken out of the registry; empty when there is none.
Controllers::node_type takeEntry(const char* key) {
  const MutexLock lock(registryLock);
  const auto entry = findEntry(key);
  countChange();
  return entry != LocalDbCtrl::controllers.end() ? LocalDbCtrl::controllers.extract(entry)
                                                 : Controllers::node_type();
}

// A new handler; null, and logged, without memory for it.
SessionHandler* makeHandler(const char* operation) {
  auto* const handler = new (std::nothrow) SessionHandler;
  if (handler == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for a database handler\n", operation);
  }
  return handler;
}

// Empties a handler that no key names any more, never two slots at a time, and drops the registry's
// reference to it. Whoever else still uses the handler frees it, the last of them. Lockers that
// have found it before see isRemoved once they have a slot's mutex.
void retire(LOCALDB_HANDLER* face, Waiting waiting) {
  const HandlerRef handler(SessionHandler::of(face));
  if (handler == nullptr) {
    return;
  }
  handler->isRemoved.store(true, std::memory_order_release);
  HEARTH_LOG(LOG_DEBUG, "Local DB handler destructor\n");
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    Slot(*handler, area).empty(waiting);
  }
}

// Makes the handler the only one in the registry and hands back those that were in it. False
// without memory. The entry is made before the lock is taken; inside, the maps only change places.
bool startWith(LOCALDB_HANDLER* handler, Controllers& earlier) {
  try {
    earlier.emplace(kDefaultKey, handler);
    const MutexLock lock(registryLock);
    soughtKey.reserve(kUsualKeyLength);
    LocalDbCtrl::controllers.swap(earlier);
    countChange();
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

enum class Registering { kDone, kKeyIsTaken, kNoMemory };

Registering registerHandler(const char* key, LOCALDB_HANDLER* handler) {
  try {
    const MutexLock lock(registryLock);
    const bool isNew = LocalDbCtrl::controllers.emplace(key, handler).second;
    countChange();
    return isNew ? Registering::kDone : Registering::kKeyIsTaken;
  } catch (const std::bad_alloc&) {
    return Registering::kNoMemory;
  }
}

// Removes the temporary files of saves that an earlier process did not live to finish.
void removeStrays() {
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    removeStrayTemporaries(LocalDbCtrl::getFileName(area));
  }
}

}  // namespace

// The reference is taken under the lock: a removal can drop the registry's own only after that.
Lookup lookUp(const char* sessionKey) {
  Lookup found;
  {
    const MutexLock lock(registryLock);
    const auto end = LocalDbCtrl::controllers.end();
    auto entry = sessionKey != nullptr ? findEntry(sessionKey) : end;
    found.isFallback = entry == end;
    entry = found.isFallback ? findEntry(kDefaultKey) : entry;
    if (entry != end && entry->second != nullptr) {
      found.handler = SessionHandler::of(entry->second)->share();
    }
    found.version = registryVersion.load(std::memory_order_relaxed);
  }
  if (found.isFallback) {
    logFallback(sessionKey);
  }
  return found;
}

bool isCurrent(unsigned int version) {
  return registryVersion.load(std::memory_order_acquire) == version;
}

void logFallback(const char* sessionKey) {
  if (sessionKey == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: sessionKey is NULL, return the default controller\n", "getDBByKey");
  } else {
    HEARTH_LOG(LOG_ERROR, "%s: Cannot found key %s, return the default controller\n", "getDBByKey",
               sessionKey);
  }
}

}  // namespace hearth

using hearth::Registering;
using hearth::Waiting;

void LocalDbCtrl::init() {
  const hearth::NoCancellation finish;
  hearth::SessionHandler* const handler = hearth::makeHandler("init");
  if (handler == nullptr) {
    return;
  }
  hearth::Controllers earlier;
  if (!hearth::startWith(&handler->face, earlier)) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory to register the default handler\n", "init");
    hearth::retire(&handler->face, Waiting::kNever);
    return;
  }
  for (const auto& entry : earlier) {
    hearth::retire(entry.second, Waiting::kNever);
  }
  hearth::removeStrays();
}

// The key is looked up twice: before the files are loaded, so that a session that exists costs
// nothing, and when the new handler is registered, because another thread may have been faster.
int LocalDbCtrl::cloneNewDB(const char* sessionKey) {
  constexpr char kOperation[] = "cloneNewDB";
  constexpr char kKnownKey[] = "%s: session DB is already for key %s, something weird\n";
  if (sessionKey == nullptr) {
    HEARTH_LOG(LOG_WARNING, "%s: sessionKey is NULL, nothing to be created\n", kOperation);
    return 0;
  }
  if (hearth::isRegistered(sessionKey)) {
    HEARTH_LOG(LOG_DEBUG, kKnownKey, kOperation, sessionKey);
    return 0;
  }
  const hearth::NoCancellation finish;
  hearth::SessionHandler* const handler = hearth::makeHandler(kOperation);
  if (handler == nullptr) {
    return 0;
  }
  for (unsigned int area = 0; area < hearth::kAreaCount; ++area) {
    const hearth::Slot slot(*handler, area);
    slot.load(kOperation);
    slot.tightenLoaded();
  }
  switch (hearth::registerHandler(sessionKey, &handler->face)) {
    case Registering::kDone:
      HEARTH_LOG(LOG_DEBUG, "%s: new handler created for session %s\n", kOperation, sessionKey);
      return 1;
    case Registering::kKeyIsTaken:
      HEARTH_LOG(LOG_DEBUG, kKnownKey, kOperation, sessionKey);
      break;
    case Registering::kNoMemory:
      HEARTH_LOG(LOG_ERROR, "%s: no memory to register session %s\n", kOperation, sessionKey);
      break;
  }
  hearth::retire(&handler->face, Waiting::kNever);
  return 0;
}

LOCALDB_HANDLER* LocalDbCtrl::getDBByKey(const char* sessionKey) {
  const hearth::Lookup found = hearth::lookUp(sessionKey);
  return found.handler != nullptr ? &found.handler->face : nullptr;
}

int LocalDbCtrl::removeDB(const char* sessionKey) {
  constexpr char kOperation[] = "removeDB";
  constexpr int kRemoved = 1;
  if (sessionKey == nullptr) {
    HEARTH_LOG(LOG_WARNING, "%s: sessionKey is NULL, nothing to be removed\n", kOperation);
    return kRemoved;
  }
  const hearth::NoCancellation finish;
  const auto entry = hearth::takeEntry(sessionKey);
  if (entry.empty()) {
    HEARTH_LOG(LOG_ERROR, "%s: Cannot found key %s\n", kOperation, sessionKey);
    return kRemoved;
  }
  hearth::retire(entry.mapped(), Waiting::kForHolder);
  return kRemoved;
}
