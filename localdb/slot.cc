// The states of a slot, and the steps that lead from one to another.
//
//   from   event                                     to   mutex             answer
//   0      lock: the file loads, path found          2    taken, kept       handle
//   0      lock: the file loads, path not found      1    taken, given back null
//   0      lock: the file is missing or unreadable   0    taken, given back null
//   1      lock: path found                          2    taken, kept       handle
//   1      lock: path not found                      1    taken, given back null
//   2      lock                                      2    not waited for    null
//   2      save: mutex given back, file written      0    given back first  0 or 2
//   2      unlock                                    1    given back first  0
//   0, 1   save, unlock                              -    not touched       2
//   0, 1   removal                                   0    taken, given back
//   2      removal: waits for the holder and for the
//          end of its save or unlock                 0    taken, given back
//
// State 2 excludes as the mutex does: whoever gets the mutex and finds state 2 leaves the object
// alone. That is what protects it while a save writes the file without the mutex, so that lockers
// are refused at once instead of waiting for the device. The state is stored last, with release
// order, and loaded with acquire order: who sees the state sees the object that goes with it.
//
// A file that holds no value (it does not parse, or is no file) loads as a handle without one, and
// the states are the same; each lock then reads the file again until it holds one.
#include "localdb/slot.h"

#include "base/address.h"
#include "base/atomic_word.h"
#include "base/no_cancellation.h"
#include "base/status.h"
#include "hearth/json_data.h"
#include "json/handle/handle.h"
#include "json/json_file.h"
#include "json/tighten.h"
#include "localdb/area.h"
#include "localdb/holds.h"
#include "log/library_log.h"

namespace hearth {
namespace {

LOCALDB_STATE_T stateOf(const LOCALDB_HANDLER& face, unsigned int area) {
  return acquireLoad(face.state[area]);
}

}  // namespace

void logNotLocked(const LockEnd& end) {
  HEARTH_LOG(end.notLocked, "%s: I am not in locked state\n", end.operation);
}

void constructSlots(LOCALDB_HANDLER& face) {
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    face.localdb[area] = nullptr;
    releaseStore(face.state[area], LDB_NOT_INITIALIZED);
    pthread_mutex_init(&face.mutex[area], nullptr);
  }
}

void destructSlots(LOCALDB_HANDLER& face) {
  for (unsigned int area = 0; area < kAreaCount; ++area) {
    if (stateOf(face, area) == LDB_ACCESSIBLE) {
      delete face.localdb[area];
    }
    pthread_mutex_destroy(&face.mutex[area]);
  }
}

LOCALDB_STATE_T Slot::state() const {
  return stateOf(handler_.face, area_);
}

void Slot::setState(LOCALDB_STATE_T state) const {
  releaseStore(handler_.face.state[area_], state);
}

bool Slot::tryMutex() const {
  return pthread_mutex_trylock(&mutex()) == 0;
}

// A locker that has seen the slot free may lose it to another one, which then holds it for long.
// So a locker does not sleep on the mutex but in the waiting room: there it is woken when the mutex
// comes free and when the slot gets a holder. One that arrives while others wait queues behind
// them, though the mutex may be free; else a thread that locks all the time would starve them.
bool Slot::enter() const {
  if (state() == LDB_LOCKED) {
    return false;
  }
  bool isIn = false;
  const auto isDecided = [&] {
    isIn = state() != LDB_LOCKED && tryMutex();
    return isIn || state() == LDB_LOCKED;
  };
  if (waitingRoom().hasQueue() || !isDecided()) {
    waitingRoom().waitInTurn(isDecided);
  }
  // Between the look at the state and the mutex another locker may have come, locked the slot and
  // started a save, which gives the mutex back in state 2.
  if (isIn && state() == LDB_LOCKED) {
    leave();
    return false;
  }
  return isIn;
}

void Slot::leave() const {
  pthread_mutex_unlock(&mutex());
  waitingRoom().wake();
}

void Slot::load(const char* operation) const {
  const bool isFirst = state() == LDB_NOT_INITIALIZED;
  if (!isFirst && (object() == nullptr || object()->jobj != nullptr)) {
    return;
  }
  const char* const name = LocalDbCtrl::getFileName(area_);
  if (isFirst ? loadFirst(name) : loadAgain(name)) {
    setState(LDB_ACCESSIBLE);
    HEARTH_LOG(LOG_DEBUG, "%s: Initialized local database for api type %d\n", operation,
               static_cast<int>(area_));
  } else if (isFirst) {
    HEARTH_LOG(LOG_WARNING, "%s: Cannot load database from %s\n", operation,
               name != nullptr ? name : kNoName);
  }
}

// A file without a value makes an object too, of which only the whole can be locked.
bool Slot::loadFirst(const char* name) const {
  JsonFile file = findJsonFile(name);
  const bool isRead = file.reading == Reading::kValue || file.reading == Reading::kNoValue;
  object() = isRead ? newOwningHandle(file.value.release()) : nullptr;
  return object() != nullptr;
}

void Slot::tightenLoaded() const {
  if (object() != nullptr) {
    tighten(object()->jobj);
  }
}

bool Slot::loadAgain(const char* name) const {
  object()->jobj = readJsonFile(name);
  return object()->jobj != nullptr;
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
  waitingRoom().wake();
}

// The mutex goes first, so that nobody sleeps on it for as long as a write takes. State 2 keeps
// everybody from the object until the last step. A removal, which gets the mutex and cannot be
// refused, waits for isSettling to end.
int Slot::settleLock(const LockEnd& end) const {
  isSettling().store(true, std::memory_order_relaxed);
  pthread_mutex_unlock(&mutex());
  const int result = leaveLockedState(end);
  isSettling().store(false, std::memory_order_release);
  waitingRoom().wake();
  return result;
}

// The public fields may have been changed by the program, so both are looked at.
int Slot::leaveLockedState(const LockEnd& end) const {
  if (state() != LDB_LOCKED) {
    logNotLocked(end);
    return kFailure;
  }
  if (object() == nullptr) {
    HEARTH_LOG(end.notInitialized,
               "%s: there is something wrong, I am is not initialized already!\n", end.operation);
    setState(LDB_NOT_INITIALIZED);
    return kFailure;
  }
  if (end.saves) {
    return save(end.operation);
  }
  setState(LDB_ACCESSIBLE);
  return kSuccess;
}

// The copy in memory goes even when the write has failed: the next lock reads what the file holds.
int Slot::save(const char* operation) const {
  const NoCancellation finish;
  const char* const name = LocalDbCtrl::getFileName(area_);
  HEARTH_LOG(LOG_DEBUG, "%s: type=%d save object %s to file %s\n", operation,
             static_cast<int>(area_), Address(object()).text(), name != nullptr ? name : kNoName);
  const int written = name != nullptr ? JsonData::saveObjectToFile(name, object()) : kFailure;
  discardObject();
  return written;
}

void Slot::empty(Waiting waiting) const {
  const bool isIn = enterForRemoval(waiting);
  if (isIn && state() != LDB_LOCKED) {
    discardObject();
  } else {
    HEARTH_LOG(LOG_ERROR, "Local DB is in Lock state, cannot be destroyed");
  }
  if (isIn) {
    leave();
  }
}

// The mutex keeps new holders out. If the slot is in state 2 even so, the last holder has given the
// mutex back and its save or unlock is under way, which is waited for.
bool Slot::enterForRemoval(Waiting waiting) const {
  if (waiting == Waiting::kNever || findHold(&handler_, area_) != nullptr) {
    return tryMutex();
  }
  pthread_mutex_lock(&mutex());
  waitingRoom().waitUntil([this] { return !isSettling().load(std::memory_order_acquire); });
  return true;
}

void Slot::discardObject() const {
  delete object();
  object() = nullptr;
  setState(LDB_NOT_INITIALIZED);
}

}  // namespace hearth
