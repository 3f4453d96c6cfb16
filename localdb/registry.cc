// The registry of handlers by session key, and the operations on sessions.
//
// LocalDbCtrl::controllers is the truth about keys, guarded by registryLock. The handlers in it are
// all made here. Whatever takes long (loading a new one's files, waiting for the holders of a
// removed one) happens while no key names the handler.
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

std::map<std::string, LOCALDB_HANDLER*> LocalDbCtrl::controllers;

namespace hearth {
namespace {

using Controllers = std::map<std::string, LOCALDB_HANDLER*>;

constexpr char kDefaultKey[] = "default";
constexpr std::size_t kUsualKeyLength = 255;

// Guards the registry. Held for look-ups and changes in memory only: never while a slot is waited
// for, a file is read or a line is logged.
pthread_mutex_t registryLock = PTHREAD_MUTEX_INITIALIZER;

// What threads may use after the program has destroyed its static objects, and so is never
// destroyed itself. Guarded by registryLock.
struct ForEver {
  Controllers controllers;  // the registry's contents from the program's end on
  std::string soughtKey;    // of the look-up under way: its memory is reused, so that it needs none
};
alignas(ForEver) unsigned char storage[sizeof(ForEver)];
ForEver& forEver = *new (storage) ForEver;

// The map that the registry's contents are in. Guarded by registryLock.
Controllers* registered = &LocalDbCtrl::controllers;

// Made after LocalDbCtrl::controllers, and so destroyed just before it: takes the contents out, and
// the threads that still run go on with them.
struct OutliveTheProgram {
  ~OutliveTheProgram() {
    const MutexLock lock(registryLock);
    forEver.controllers.swap(LocalDbCtrl::controllers);
    registered = &forEver.controllers;
  }
};
const OutliveTheProgram outliveTheProgram;

// Goes up whenever a key may have changed hands. Written with registryLock held.
std::atomic<unsigned int> registryVersion{0};

void countChange() {
  registryVersion.fetch_add(1, std::memory_order_release);
}

// Requires registryLock.
Controllers::iterator findEntry(const char* key) {
  const std::size_t length = std::strlen(key);
  if (length <= forEver.soughtKey.capacity()) {
    forEver.soughtKey.assign(key, length);
    return registered->find(forEver.soughtKey);
  }
  return std::find_if(registered->begin(), registered->end(),
                      [=](const Controllers::value_type& entry) { return entry.first == key; });
}

bool isRegistered(const char* key) {
  const MutexLock lock(registryLock);
  return findEntry(key) != registered->end();
}

// The key's entry, taken out of the registry; empty when there is none.
Controllers::node_type takeEntry(const char* key) {
  const MutexLock lock(registryLock);
  const auto entry = findEntry(key);
  countChange();
  return entry != registered->end() ? registered->extract(entry) : Controllers::node_type();
}

// A new handler; null, and logged, without memory for it.
SessionHandler* makeHandler(const char* operation) {
  auto* const handler = new (std::nothrow) SessionHandler;
  if (handler == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for a database handler\n", operation);
  }
  return handler;
}

// Empties a handler that no key names any more, never two slots at a time, and ends its first use;
// what others still use is freed by the last of them.
void retire(LOCALDB_HANDLER* face, Waiting waiting) {
  const HandlerUse firstUse(SessionHandler::of(face));
  if (firstUse == nullptr) {
    return;
  }
  firstUse->isRemoved.store(true, std::memory_order_release);
  HEARTH_LOG(LOG_DEBUG, "Local DB handler destructor\n");
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    Slot(*firstUse, area).empty(waiting);
  }
}

// Gives the registry this one handler and hands back what it had. False without memory.
bool startWith(LOCALDB_HANDLER* handler, Controllers& earlier) {
  try {
    earlier.emplace(kDefaultKey, handler);
    const MutexLock lock(registryLock);
    forEver.soughtKey.reserve(kUsualKeyLength);
    registered->swap(earlier);
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
    const bool isNew = registered->emplace(key, handler).second;
    countChange();
    return isNew ? Registering::kDone : Registering::kKeyIsTaken;
  } catch (const std::bad_alloc&) {
    return Registering::kNoMemory;
  }
}

}  // namespace

Lookup lookUp(const char* sessionKey) {
  Lookup found;
  {
    const MutexLock lock(registryLock);
    const auto end = registered->end();
    auto entry = sessionKey != nullptr ? findEntry(sessionKey) : end;
    found.isFallback = entry == end;
    entry = found.isFallback ? findEntry(kDefaultKey) : entry;
    if (entry != end && entry->second != nullptr) {
      found.use = SessionHandler::of(entry->second)->use();
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

namespace {

// What saves of an earlier process left when it was cut off.
void removeStrays() {
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    removeStrayTemporaries(LocalDbCtrl::getFileName(area));
  }
}

}  // namespace
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
    hearth::Slot(*handler, area).load(kOperation);
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
  return found.use != nullptr ? &found.use->face : nullptr;
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
