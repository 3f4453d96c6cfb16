// What a backend keeps at hand when it works with hearth: a handle that deletes itself, an area's
// lock that ends with its scope, and the row of a message by its label.
#ifndef HEARTH_EXAMPLES_BACKEND_H
#define HEARTH_EXAMPLES_BACKEND_H

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "hearth/hearth.h"

// The session key of a backend that gives its sessions no databases of their own. Any unknown key
// finds the same handler, but leaves an error line in the log each time.
constexpr char kDefaultSession[] = "default";

// Every handle that hearth returns is the caller's to delete.
using Handle = std::unique_ptr<TreeMapObject>;

// One request's hold on an area. It is made, used and ended on one thread.
//
// Leaving the scope without a save unlocks: whatever was changed by then stays in memory and is
// written by the next save, so check a message before the first change, not between two.
class AreaLock {
 public:
  // Tries to take the area; false in a condition when it is held by another request, when nothing
  // is at the path, or when the area has no database.
  AreaLock(API_TYPE_T area, const char* path, std::string session)
      : area_(area),
        session_(std::move(session)),
        value_(LocalDbCtrl::lockDbObject(area, path, session_.c_str())),
        held_(value_ != nullptr) {
    if (*path != '\0') {
      borrowed_.reset(value_);  // for the empty path the handle is the database's own
    }
  }

  ~AreaLock() { unlock(); }

  AreaLock(const AreaLock&) = delete;
  AreaLock& operator=(const AreaLock&) = delete;

  explicit operator bool() const { return held_; }
  TreeMapObject* operator->() const { return value_; }

  // Writes the whole area to its file and ends the lock. False when it could not be written: the
  // changes are gone and the file is as it was.
  [[nodiscard]] bool save() {
    return end([this] { return LocalDbCtrl::saveDbObject(area_, session_.c_str()); });
  }

  // Ends the lock and keeps the changes in memory.
  bool unlock() {
    return end([this] { return LocalDbCtrl::unlockDbObject(area_, session_.c_str()); });
  }

 private:
  template <typename Ending>
  bool end(Ending ending) {
    if (!held_) {
      return false;
    }
    borrowed_.reset();
    value_ = nullptr;
    held_ = false;
    return ending() == 0;
  }

  API_TYPE_T area_;
  std::string session_;
  TreeMapObject* value_;
  Handle borrowed_;
  bool held_;
};

constexpr unsigned int kNoMessage = ~0U;

// The row of the label in its area's table: the message index that hearth takes.
inline unsigned int messageRow(API_TYPE_T area, const char* label) {
  for (unsigned int row = 0;; ++row) {
    const char* candidate = COMM_LABEL(area, row);
    if (std::strcmp(candidate, label) == 0) {
      return row;
    }
    if (std::strcmp(candidate, "unknown") == 0) {
      return kNoMessage;
    }
  }
}

#endif
