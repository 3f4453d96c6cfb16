// A session handler as the library knows it: the three public fields and, beside them, how many
// references keep it alive, which hold is on each of its slots and who waits for one.
//
// References are kept by the registry while a key names the handler, by each operation under way,
// and by each hold on one of its slots. The last one to go frees the handler, so a removed session
// lives on until its last holder has saved or unlocked.
#ifndef HEARTH_LOCALDB_SESSION_HANDLER_H
#define HEARTH_LOCALDB_SESSION_HANDLER_H

#include <atomic>
#include <memory>
#include <string>
#include <type_traits>

#include "hearth/local_db_ctrl.h"
#include "localdb/area.h"
#include "localdb/waiting_room.h"

namespace hearth {

struct SessionHandler;

struct DropHandler {
  void operator()(SessionHandler* handler) const;
};

// One reference to a handler, which stays alive until the reference goes.
using HandlerRef = std::unique_ptr<SessionHandler, DropHandler>;

// A handler, and how a session key led to it.
struct Lookup {
  HandlerRef handler;        // null when there is none
  bool isFallback = false;   // the key is not registered, the handler is that of "default"
  unsigned int version = 0;  // of the registry: as long as it stays, the key names this handler
};

// A thread's hold on a slot, from its lock to its save or unlock. Lies in the slot's handler, which
// it keeps alive. Belongs to the holding thread; while there is none, to whoever has the slot's
// mutex.
struct Hold {
  Hold* older = nullptr;  // the hold that this thread took before
  unsigned int area = 0;
  Lookup found;         // of the lock; without a handler while nobody holds the slot
  bool hasKey = false;  // false when the slot was locked under a null key
  std::string key;      // of the lock; it may name another handler when the hold ends
};

// The public fields. LOCALDB_HANDLER's own destructor never runs here: it logs and empties the
// slots, and the removal of the session has done both.
struct Face {
  Face() : face() {}
  ~Face();  // there is no reference left
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  union {
    LOCALDB_HANDLER face;
  };
};
static_assert(std::is_standard_layout_v<Face>,
              "a pointer to the public fields is one to what surrounds them");

struct SessionHandler : Face {
  // The handler behind a registered pointer; null for null.
  static SessionHandler* of(LOCALDB_HANDLER* face) {
    return static_cast<SessionHandler*>(reinterpret_cast<Face*>(face));
  }

  // Makes a further reference. Requires one that lasts until this returns.
  [[nodiscard]] HandlerRef share();

  std::atomic<unsigned int> users{1};  // references; the first is the registry's, or its maker's
  std::atomic<bool> isRemoved{false};  // set before the slots are emptied
  Hold holds[kAreaCount];
  std::atomic<bool> isSettling[kAreaCount] = {};  // a save or unlock has yet to leave state 2
  WaitingRoom waitingRooms[kAreaCount];
};

}  // namespace hearth

#endif
