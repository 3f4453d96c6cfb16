// One slot of a handler: the database of one area, its state and its mutex.
//
// Only this class writes a slot's state or touches its mutex. The mutex outlives the function that
// took it through two operations alone: enter takes it, leave gives it back.
#ifndef HEARTH_LOCALDB_SLOT_H
#define HEARTH_LOCALDB_SLOT_H

#include "hearth/local_db_ctrl.h"
#include "hearth/logger.h"

namespace hearth {

// The two ways to end a lock log the same lines at severities of their own.
struct Ending {
  const char* operation;
  LOG_TYPE_T notLocked;
  LOG_TYPE_T notInitialized;
};

enum class Waiting { kForHolder, kNever };

// A view; the handler outlives it.
class Slot {
 public:
  Slot(LOCALDB_HANDLER& handler, unsigned int area) : handler_(handler), area_(area) {}

  void construct() const;
  // Frees the object of an accessible slot and destroys the mutex. Nobody uses the slot any more.
  void destruct() const;

  [[nodiscard]] LOCALDB_STATE_T state() const;

  // Takes the mutex, waiting while the slot is loaded or emptied but never for a holder. False,
  // with nothing held, when the slot is locked.
  [[nodiscard]] bool enter() const;
  void leave() const;

  // --- Between enter and leave, or on a handler that no other thread knows
  // ------------------------

  // Loads the area's file into a slot that has nothing in memory, logging for the operation.
  void load(const char* operation) const;

  // The handle that a lock on the path hands out; null when the database or the value is missing.
  [[nodiscard]] TreeMapObject* open(const char* path) const;

  // From here to the end of the lock the slot is the calling thread's.
  void markLocked() const;

  // --- After leave, by the thread whose hold has ended
  // --------------------------------------------

  // True when there is a locked database to save or to keep. Otherwise logs why not; a locked slot
  // without a database then has nothing in memory.
  [[nodiscard]] bool isLockedDatabase(const Ending& ending) const;
  [[nodiscard]] int save(const char* operation) const;
  [[nodiscard]] int unlock() const;

  // --- Removal
  // ------------------------------------------------------------------------------------

  // Discards the object of a slot that nobody holds. A slot that stays locked, or that this thread
  // holds itself, is logged and left as it is.
  void empty(Waiting waiting) const;

 private:
  [[nodiscard]] bool enterForRemoval(Waiting waiting) const;
  [[nodiscard]] bool isLeftByUnlock() const;
  void setState(LOCALDB_STATE_T state) const;
  void discardObject() const;

  TreeMapObject*& object() const { return handler_.localdb[area_]; }
  pthread_mutex_t& mutex() const { return handler_.mutex[area_]; }

  LOCALDB_HANDLER& handler_;
  unsigned int area_;
};

}  // namespace hearth

#endif
