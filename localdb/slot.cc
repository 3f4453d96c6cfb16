// The states of a slot.
//
//   from   event                                     to   mutex             answer
//   0      lock: the file loads, path found          2    taken, kept       handle
//   0      lock: the file loads, path not found      1    taken, given back null
//   0      lock: the file does not load              0    taken, given back null
//   1      lock: path found                          2    taken, kept       handle
//   1      lock: path not found                      1    taken, given back null
//   2      lock                                      2    not waited for    null
//   2      save: mutex given back, file written      0    given back first  0 or 2
//   2      unlock                                    1    given back first  0
//   0, 1   save, unlock                              -    not touched       2
//   0, 1   removal                                   0    taken, given back
//   2      removal: waits for the holder, leaves a
//          slot whose save is still writing          -    taken, given back
//
// State 2 excludes as the mutex does: whoever gets the mutex and finds state 2 leaves the object
// alone. That is what protects it while a save writes the file without the mutex, so that lockers
// are refused at once instead of waiting for the device. The state is stored last, with release
// order, and loaded with acquire order: who sees the state sees the object that goes with it.
#include "localdb/slot.h"

#include <ctime>

#include "hearth/json_data.h"
#include "json/status.h"
#include "localdb/area.h"
#include "localdb/holds.h"
#include "log/log.h"

namespace hearth {
namespace {

// How long a thread looks away from a slot before it looks again.
void pauseBriefly() {
  constexpr timespec kPause = {0, 200'000};
  nanosleep(&kPause, nullptr);
}

}  // namespace

void Slot::construct() const {
  object() = nullptr;
  setState(LDB_NOT_INITIALIZED);
  pthread_mutex_init(&mutex(), nullptr);
}

void Slot::destruct() const {
  if (state() == LDB_ACCESSIBLE) {
    discardObject();
  }
  pthread_mutex_destroy(&mutex());
}

LOCALDB_STATE_T Slot::state() const {
  return __atomic_load_n(&handler_.state[area_], __ATOMIC_ACQUIRE);
}

void Slot::setState(LOCALDB_STATE_T state) const {
  __atomic_store_n(&handler_.state[area_], state, __ATOMIC_RELEASE);
}

// Another locker may get the mutex, and then hold the slot for long, after this one has seen it
// free; so the state is looked at again and again instead of sleeping on the mutex.
bool Slot::enter() const {
  while (state() != LDB_LOCKED) {
    if (pthread_mutex_trylock(&mutex()) != 0) {
      pauseBriefly();
      continue;
    }
    if (state() != LDB_LOCKED) {
      return true;
    }
    leave();
  }
  return false;
}

void Slot::leave() const {
  pthread_mutex_unlock(&mutex());
}

void Slot::load(const char* operation) const {
  if (state() != LDB_NOT_INITIALIZED) {
    return;
  }
  const char* const name = LocalDbCtrl::getFileName(area_);
  object() = name != nullptr ? JsonData::createObjectFromFile(name) : nullptr;
  if (object() == nullptr) {
    HEARTH_LOG(LOG_WARNING, "%s: Cannot load database from %s\n", operation,
               name != nullptr ? name : kNoName);
    return;
  }
  setState(LDB_ACCESSIBLE);
  HEARTH_LOG(LOG_DEBUG, "%s: Initialized local database for api type %d\n", operation,
             static_cast<int>(area_));
}

TreeMapObject* Slot::open(const char* path) const {
  constexpr char kOperation[] = "lockDbObject";
  load(kOperation);
  if (object() == nullptr) {
    HEARTH_LOG(LOG_ERROR,
               "%s: There is something wrong! localdb %d is null in accessable state %d\n",
               kOperation, static_cast<int>(area_), static_cast<int>(state()));
    return nullptr;
  }
  return *path == '\0' ? object() : object()->get(path);
}

void Slot::markLocked() const {
  setState(LDB_LOCKED);
}

bool Slot::isLockedDatabase(const Ending& ending) const {
  if (state() != LDB_LOCKED) {
    HEARTH_LOG(ending.notLocked, "%s: I am not in locked state\n", ending.operation);
    return false;
  }
  if (object() == nullptr) {
    HEARTH_LOG(ending.notInitialized,
               "%s: there is something wrong, I am is not initialized already!\n",
               ending.operation);
    setState(LDB_NOT_INITIALIZED);
    return false;
  }
  return true;
}

int Slot::save(const char* operation) const {
  const char* const name = LocalDbCtrl::getFileName(area_);
  HEARTH_LOG(LOG_DEBUG, "%s: type=%d save object %p to file %s\n", operation,
             static_cast<int>(area_), static_cast<void*>(object()),
             name != nullptr ? name : kNoName);
  const int written = name != nullptr ? JsonData::saveObjectToFile(name, object()) : kFailure;
  discardObject();
  return written;
}

int Slot::unlock() const {
  setState(LDB_ACCESSIBLE);
  return kSuccess;
}

void Slot::empty(Waiting waiting) const {
  const bool entered = enterForRemoval(waiting);
  const bool isFree = entered && isLeftByUnlock();
  if (isFree) {
    discardObject();
  } else {
    HEARTH_LOG(LOG_ERROR, "Local DB is in Lock state, cannot be destroyed");
  }
  if (entered) {
    leave();
  }
}

bool Slot::enterForRemoval(Waiting waiting) const {
  const bool isMine = findHold(&handler_, area_) != nullptr;
  if (waiting == Waiting::kForHolder && !isMine) {
    return pthread_mutex_lock(&mutex()) == 0;
  }
  return pthread_mutex_trylock(&mutex()) == 0;
}

// With the mutex in hand: true when the slot is not locked. An unlock gives the mutex back an
// instant before it changes the state, so a locked slot gets a few looks.
bool Slot::isLeftByUnlock() const {
  constexpr int kLooks = 10;
  for (int look = 0; look < kLooks && state() == LDB_LOCKED; ++look) {
    pauseBriefly();
  }
  return state() != LDB_LOCKED;
}

void Slot::discardObject() const {
  delete object();
  object() = nullptr;
  setState(LDB_NOT_INITIALIZED);
}

}  // namespace hearth
