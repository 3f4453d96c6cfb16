// What the library keeps about a handler beside its three public fields, and how long a handler
// lives.
//
// Every LOCALDB_HANDLER has a record from its construction to its destruction, found by address. A
// handler made for a session lives as long as it has users: the registry while a key names it,
// each operation under way, and each holder of one of its slots. The last user frees it.
#ifndef HEARTH_LOCALDB_HANDLER_RECORD_H
#define HEARTH_LOCALDB_HANDLER_RECORD_H

#include <pthread.h>

#include <atomic>
#include <memory>
#include <string>

#include "hearth/local_db_ctrl.h"
#include "localdb/area.h"

namespace hearth {

struct HandlerRecord;

// One use of a handler; the handler stays alive until it ends.
struct EndUse {
  void operator()(HandlerRecord* record) const;
};
using HandlerUse = std::unique_ptr<HandlerRecord, EndUse>;

// One slot as its holder knows it. Belongs to the holding thread while that holds the slot, and to
// whoever is locking the slot, with its mutex, before that.
struct Hold {
  Hold* older = nullptr;  // the hold that this thread took before
  HandlerUse use;         // of the slot's handler; null while the slot is not held
  unsigned int area = 0;

  // How the handler was found: the end of the lock may come when the key names another.
  bool hasKey = false;  // false: under a null key
  bool isFallback = false;
  unsigned int version = 0;
  std::string key;
};

struct HandlerRecord {
  LOCALDB_HANDLER* handler = nullptr;
  HandlerRecord* next = nullptr;       // in its bucket of the table; guarded by registryLock
  std::atomic<unsigned int> users{1};  // the first is whoever made the handler
  bool emptied = false;                // written by the one who ends the first use
  Hold holds[kAreaCount];
};

// Guards LocalDbCtrl::controllers and the table of records. It is held for look-ups and changes in
// memory only: never while a slot is waited for, a file is read or a line is logged.
extern pthread_mutex_t registryLock;

// Makes the handler's record and enters it in the table. Without memory for it the handler stays
// without a record, and nothing uses it.
void addRecord(LOCALDB_HANDLER& handler);

// Takes the handler's record out of the table. Null when it has none.
[[nodiscard]] std::unique_ptr<HandlerRecord> takeRecord(const LOCALDB_HANDLER& handler);

// The handler's record, null when it has none. Requires registryLock.
[[nodiscard]] HandlerRecord* findRecord(const LOCALDB_HANDLER* handler);

// A further use of the handler; null when it has no record. Requires registryLock.
[[nodiscard]] HandlerUse startUse(const LOCALDB_HANDLER* handler);

}  // namespace hearth

#endif
