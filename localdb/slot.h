// One slot of a handler: the database of one area, its state and its mutex.
//
// Only this file's functions write a slot's state or touch its mutex. The mutex outlives the
// function that took it through three operations alone: enter takes it, leave and settleLock give
// it back.
#ifndef HEARTH_LOCALDB_SLOT_H
#define HEARTH_LOCALDB_SLOT_H

#include "hearth/local_db_ctrl.h"
#include "hearth/logger.h"
#include "localdb/session_handler.h"

namespace hearth {

// One of the two ways to end a lock. Both log the same lines, at severities of their own.
struct LockEnd {
  const char* operation;
  bool saves;  // writes the file and drops the copy in memory; an unlock keeps the copy
  LOG_TYPE_T notLocked;
  LOG_TYPE_T notInitialized;
};

void logNotLocked(const LockEnd& end);

enum class Waiting { kForHolder, kNever };

// Makes every slot of a handler, with nothing in memory.
void constructSlots(LOCALDB_HANDLER& face);
// Frees the objects of accessible slots and destroys the mutexes. Requires that nobody uses the
// slots any more.
void destructSlots(LOCALDB_HANDLER& face);

// A view of a slot; the handler outlives it.
class Slot {
 public:
  Slot(SessionHandler& handler, unsigned int area) : handler_(handler), area_(area) {}

  [[nodiscard]] LOCALDB_STATE_T state() const;

  // Takes the mutex, waiting while the slot is loaded or emptied but never for a holder. False,
  // with nothing held, when the slot is locked.
  [[nodiscard]] bool enter() const;
  void leave() const;

  // --- Between enter and leave, or on a handler that no other thread knows -----------------------

  // Loads the area's file into a slot that has nothing in memory, logging for the operation. A slot
  // whose file held no value reads it again, and logs when there is one now.
  void load(const char* operation) const;

  // Makes what has just been loaded smaller, for a slot that will keep it in memory.
  void tightenLoaded() const;

  // The handle that a lock on the path hands out; null when the database or the value is missing.
  [[nodiscard]] TreeMapObject* open(const char* path) const;

  // From here to the end of the lock the slot is the calling thread's.
  void markLocked() const;

  // --- By the thread whose hold has just ended ---------------------------------------------------

  // Gives the mutex back, then saves the database or keeps it. A removal that gets the mutex waits
  // until this returns. A failure when the slot is not in state 2 after all, and when it is but has
  // no database; it has nothing in memory then. Both are logged.
  [[nodiscard]] int settleLock(const LockEnd& end) const;

  // --- Removal -----------------------------------------------------------------------------------

  // Discards the object of a slot that nobody holds, after waiting for a holder and its save. A
  // slot that is locked nevertheless, and one that this thread holds itself, is logged and left as
  // it is.
  void empty(Waiting waiting) const;

 private:
  [[nodiscard]] bool tryMutex() const;
  [[nodiscard]] bool enterForRemoval(Waiting waiting) const;
  [[nodiscard]] bool loadFirst(const char* name) const;
  [[nodiscard]] bool loadAgain(const char* name) const;
  [[nodiscard]] int leaveLockedState(const LockEnd& end) const;
  [[nodiscard]] int save(const char* operation) const;
  void setState(LOCALDB_STATE_T state) const;
  void discardObject() const;

  TreeMapObject*& object() const { return handler_.face.localdb[area_]; }
  pthread_mutex_t& mutex() const { return handler_.face.mutex[area_]; }
  WaitingRoom& waitingRoom() const { return handler_.waitingRooms[area_]; }
  std::atomic<bool>& isSettling() const { return handler_.isSettling[area_]; }

  SessionHandler& handler_;
  unsigned int area_;
};

}  // namespace hearth

#endif
