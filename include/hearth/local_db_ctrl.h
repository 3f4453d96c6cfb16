// The local database: one JSON file per API area, per-session copies in memory, and the protocol by
// which a request takes an area, changes it, and saves or unlocks it.
//
//   TreeMapObject* radio = LocalDbCtrl::lockDbObject(API_WIFI, "radios.[0]", session);
//   if (radio == nullptr) { ... held by another request, no such value, or no database ... }
//   radio->set("channel", 11);
//   delete radio;
//   LocalDbCtrl::saveDbObject(API_WIFI, session);
//
// A session without a handler of its own works on the handler "default". docs/lock-protocol.md has
// the states and what happens in each.
#ifndef HEARTH_LOCAL_DB_CTRL_H
#define HEARTH_LOCAL_DB_CTRL_H

#include <pthread.h>
#include <stdint.h>

#include <map>
#include <string>

#include "hearth/export.h"
#include "hearth/tree_map_object.h"

enum API_TYPE_T {
  API_GATEWAY,
  API_WIFI,
  API_NETWORK,
  API_SECURITY,
  API_SERVICE,
  API_MEDIASHARE,
  API_QOS,
  API_MISC
};

// The directory of each area, below BEConfig::DATA_LOCATION.
HEARTH_API extern const char* const API_DATA_DIR[8];

enum LOCALDB_STATE_T : uint32_t {
  LDB_NOT_INITIALIZED,  // nothing in memory; the next lock loads the file
  LDB_ACCESSIBLE,       // in memory, held by nobody
  LDB_LOCKED            // held, or being written by a save
};

// The databases of one session, one slot per area. Made and destroyed by LocalDbCtrl; the fields
// are there to be looked at. Threads: others may be changing them, so read a state with
// __atomic_load_n(&handler->state[area], __ATOMIC_ACQUIRE); it may have changed when you act on it.
// localdb and what it points to belong to the slot's holder, the mutex to the library. Requires:
// the session is not removed meanwhile.
struct HEARTH_API LOCALDB_HANDLER {
  LOCALDB_HANDLER();
  ~LOCALDB_HANDLER();
  LOCALDB_HANDLER(const LOCALDB_HANDLER&) = delete;
  LOCALDB_HANDLER& operator=(const LOCALDB_HANDLER&) = delete;

  TreeMapObject* localdb[8];  // owned; null exactly when the state is LDB_NOT_INITIALIZED
  LOCALDB_STATE_T state[8];   // written by the library alone, atomically
  pthread_mutex_t mutex[8];   // held by the slot's holder from lock to save or unlock
};

// Threads: every operation may be called from any thread. Slots are independent: other areas, and
// the same area of another session's handler, never wait for each other.
class HEARTH_API LocalDbCtrl {
 public:
  LocalDbCtrl() = delete;

  // --- Sessions ----------------------------------------------------------------------------------

  // The handlers by session key. Owned by the registry; change it through the operations below
  // only, and look into it while no other thread is in one of them. It is never destroyed: the
  // operations work on for threads that outlast the program's static objects.
  static std::map<std::string, LOCALDB_HANDLER*> controllers;

  // Registers a new handler under "default", with nothing loaded yet, and drops all earlier ones.
  // Removes the temporary files that saves of a process that died have left in the areas' folders.
  // Threads: call it once, before any other database operation.
  static void init();

  // Makes a handler for the session and loads every area's file into it as last saved; what another
  // handler holds unsaved is not seen. A file that does not load is tried again by its first lock.
  // All eight copies stay in memory until they are saved or the session is removed.
  // Result: 1 when made; 0 for a null key and for a session that has one already.
  // Ownership: the key is copied; the handler is the registry's.
  static int cloneNewDB(const char* sessionKey);

  // The session's handler, or the one of "default" when the key is null or unknown (logged).
  // Failure: null when "default" is not registered.
  // Ownership: the registry's; valid until its session is removed.
  static LOCALDB_HANDLER* getDBByKey(const char* sessionKey);

  // Removes the session and destroys its handler; "default" is a session like any other. Waits for
  // the holders of its slots and for the saves that they end with: what was saved is in its file
  // when this returns, so a handler made afterwards has read it. A slow device holds it up, and so
  // does a database that is a pipe: as long as somebody drains it, then for a second.
  // Slots that the calling thread holds itself are logged and left to it; they keep the handler
  // alive until they are saved or unlocked, under the same key.
  // Result: 1 in every case.
  // Requires: the calling thread holds no slot of another handler that is being removed.
  static int removeDB(const char* sessionKey);

  // --- Lock, save, unlock ------------------------------------------------------------------------
  // The holder of a slot is the thread that locked it; it ends its lock with exactly one save or
  // unlock for the same area and key, even if the session has been removed or made anew since: a
  // thread's save or unlock ends the lock that it took last under that key, wherever that was. Only
  // a thread without one means the handler that the key names now. A thread that exits without
  // ending its locks leaves the slots locked for good. Cancelling a thread (pthread_cancel) does
  // not cut an operation off: it takes effect at the thread's next cancellation point after it.

  // Takes the area's slot and gives a handle on the value at path ("" for the whole database). The
  // area's file is loaded first when it is not in memory.
  // Failure: null, with nothing held: the slot is held already (at once, without waiting), the file
  // is missing or could not be read (the next lock tries again), nothing is at path, the area is
  // out of range, path is null, or there is no handler. Which of them it was, the log tells at
  // severities WARNING and ERROR, but for "nothing is at path". A caller that must know locks ""
  // and looks for the value itself; null then means that the slot is held if its state in
  // getDBByKey's handler is LDB_LOCKED.
  // A file that holds no value (it does not parse, holds null, or is no regular file) loads as a
  // database without one: "" gives a handle with a null jobj, whose save answers 2 and leaves the
  // file alone; any other path gives null. Each lock reads such a file again, so putting a good one
  // in its place is all that is needed.
  // Ownership: for "" the handle is the slot's own and must not be deleted; otherwise it is
  // borrowed and the caller deletes it. Neither may be used to read or write after the save or
  // unlock.
  static TreeMapObject* lockDbObject(unsigned int apiT, const char* path, const char* sessionKey);

  // Writes the area's whole database to its file (see JsonData::saveObjectToFile), discards the
  // copy in memory and ends the lock. The next lock reads the file again. What json-c cannot hold
  // is written as it was read, changed or not: an integer beyond 64 bits as the nearest that fits,
  // -0 as 0, of members of one name the last, nothing of what followed the root value.
  // Result: 0 when written; 2 when the write failed (the changes are lost, the file is as it was)
  // and when the calling thread holds no such lock (nothing is touched).
  static int saveDbObject(API_TYPE_T apiT, const char* sessionKey);

  // Ends the lock and keeps the changes in memory: the next holder in the same handler sees them,
  // and the next save writes them.
  // Result: 0; 2 when the calling thread holds no such lock (nothing is touched).
  static int unlockDbObject(unsigned int apiT, const char* sessionKey);

  // --- Files -------------------------------------------------------------------------------------
  // Names are formed from BEConfig::DATA_LOCATION as it is at the call. A returned name lies in a
  // buffer of its operation and calling thread, until that thread calls the operation again.
  // Failure: null, with a log line where an area or index is out of range or a name is longer than
  // 255 characters. Null without a line for the messages of API_MISC, which can have no file.

  // The area's directory name. Ownership: constant.
  static const char* getApiDir(unsigned int apiT);

  // The area's database file: "<location>/<area>/<area>.ldb".
  static const char* getFileName(unsigned int apiT);

  // A message's document, "<location>/<area>/<LABEL>.ldb", and its schema,
  // "<location>/<area>/<LABEL>_SCHEMA.ldb". commT is the row of its label (labels.h).
  static const char* getFileName(unsigned int apiT, unsigned int commT);
  static const char* getSchemaFile(unsigned int apiT, unsigned int commT);

  // Checks the handle's value against the schema of a message.
  // Result: 0 when it conforms, or when there is no schema file (with a warning); else 2.
  static int validateObject(TreeMapObject* obj, unsigned int apiT, unsigned int commT);
};

#endif
