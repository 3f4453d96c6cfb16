// A handler as the library knows it: the three public fields, and beside them who uses the handler,
// who holds its slots and who waits for one.
//
// It lives as long as it has users: the registry while a key names it, each operation under way,
// and each holder of one of its slots. The last user frees it.
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

// One use of a handler; the handler stays alive until it ends.
struct EndUse {
  void operator()(SessionHandler* handler) const;
};
using HandlerUse = std::unique_ptr<SessionHandler, EndUse>;

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

// The public fields. They end without their own destructor, which logs and empties what stands
// alone: a removal has done both.
struct Face {
  Face() : face() {}
  ~Face();  // nobody uses the handler any more
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  union {
    LOCALDB_HANDLER face;
  };
};
static_assert(std::is_standard_layout_v<Face>, "a face has the address of its fields");

struct SessionHandler : Face {
  // The handler that a registered pointer leads to; null for null.
  static SessionHandler* of(LOCALDB_HANDLER* face) {
    return static_cast<SessionHandler*>(reinterpret_cast<Face*>(face));
  }

  // A further use. Requires one that lasts until this returns.
  [[nodiscard]] HandlerUse use();

  std::atomic<unsigned int> users{1};  // the first is whoever made the handler
  std::atomic<bool> isRemoved{false};  // before its slots are emptied
  Hold holds[kAreaCount];
  std::atomic<bool> isEnding[kAreaCount] = {};  // a save or unlock has yet to leave state 2
  WaitingRoom waitingRooms[kAreaCount];
};

}  // namespace hearth

#endif
