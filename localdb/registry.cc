// The registry of handlers by session key, and the operations on sessions.
//
// LocalDbCtrl::controllers is the truth about keys, guarded by registryLock. Whatever takes long
// (loading a new handler's files, waiting for the holders of a removed one) happens while no key
// names the handler.
#include "localdb/registry.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

#include "json/file_replace.h"
#include "localdb/area.h"
#include "localdb/handler.h"
#include "log/log.h"
#include "log/mutex_lock.h"

std::map<std::string, LOCALDB_HANDLER*> LocalDbCtrl::controllers;

namespace hearth {
namespace {

using Controllers = std::map<std::string, LOCALDB_HANDLER*>;

constexpr char kDefaultKey[] = "default";

// The key of the look-up under way, guarded by registryLock: its memory is reused, so that a
// look-up allocates nothing.
std::string soughtKey;
constexpr std::size_t kUsualKeyLength = 255;

// Goes up whenever a key may have changed hands. Written with registryLock held.
std::atomic<unsigned int> registryVersion{0};

void countChange() {
  registryVersion.fetch_add(1, std::memory_order_release);
}

// Requires registryLock.
Controllers::iterator findEntry(const char* key) {
  Controllers& all = LocalDbCtrl::controllers;
  const std::size_t length = std::strlen(key);
  if (length <= soughtKey.capacity()) {
    soughtKey.assign(key, length);
    return all.find(soughtKey);
  }
  return std::find_if(all.begin(), all.end(),
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

HandlerRecord* recordOf(const LOCALDB_HANDLER* handler) {
  const MutexLock lock(registryLock);
  return findRecord(handler);
}

// A new handler; null, and logged, without memory for it.
LOCALDB_HANDLER* makeHandler(const char* operation) {
  std::unique_ptr<LOCALDB_HANDLER> handler(new (std::nothrow) LOCALDB_HANDLER);
  if (handler == nullptr || recordOf(handler.get()) == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for a database handler\n", operation);
    return nullptr;
  }
  return handler.release();
}

// Empties a handler that no key names any more and ends its first use; what others still use is
// freed by the last of them.
void retire(LOCALDB_HANDLER* handler, Waiting waiting) {
  const HandlerUse firstUse(recordOf(handler));
  if (firstUse != nullptr) {
    emptyHandler(*handler, waiting);
    firstUse->emptied = true;
  }
}

// Gives the registry this one handler and hands back what it had. False without memory.
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

}  // namespace

Lookup lookUp(const char* sessionKey) {
  Lookup found;
  {
    const MutexLock lock(registryLock);
    const auto end = LocalDbCtrl::controllers.end();
    auto entry = sessionKey != nullptr ? findEntry(sessionKey) : end;
    found.isFallback = entry == end;
    entry = found.isFallback ? findEntry(kDefaultKey) : entry;
    if (entry != end) {
      found.use = startUse(entry->second);
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
  LOCALDB_HANDLER* const handler = hearth::makeHandler("init");
  if (handler == nullptr) {
    return;
  }
  hearth::Controllers earlier;
  if (!hearth::startWith(handler, earlier)) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory to register the default handler\n", "init");
    hearth::retire(handler, Waiting::kNever);
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
  LOCALDB_HANDLER* const handler = hearth::makeHandler(kOperation);
  if (handler == nullptr) {
    return 0;
  }
  for (unsigned int area = 0; area < hearth::kAreaCount; ++area) {
    hearth::Slot(*handler, area).load(kOperation);
  }
  switch (hearth::registerHandler(sessionKey, handler)) {
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
  hearth::retire(handler, Waiting::kNever);
  return 0;
}

LOCALDB_HANDLER* LocalDbCtrl::getDBByKey(const char* sessionKey) {
  const hearth::Lookup found = hearth::lookUp(sessionKey);
  return found.use != nullptr ? found.use->handler : nullptr;
}

int LocalDbCtrl::removeDB(const char* sessionKey) {
  constexpr char kOperation[] = "removeDB";
  constexpr int kRemoved = 1;
  if (sessionKey == nullptr) {
    HEARTH_LOG(LOG_WARNING, "%s: sessionKey is NULL, nothing to be removed\n", kOperation);
    return kRemoved;
  }
  const auto entry = hearth::takeEntry(sessionKey);
  if (entry.empty()) {
    HEARTH_LOG(LOG_ERROR, "%s: Cannot found key %s\n", kOperation, sessionKey);
    return kRemoved;
  }
  hearth::retire(entry.mapped(), Waiting::kForHolder);
  return kRemoved;
}
