// Whose databases a request works on.
//
// In the contract a session key without databases of its own means those of "default", which is
// right for a backend that gives its sessions none, and wrong for a request of a session that was
// closed a moment ago. Here that is said when the session is made.
//
//   Session::shared()      the databases that all sessions share
//   Session::of(key)       those of this session, and of no other: once the session is closed, each
//                          operation answers kNoSession
//   Session::open(key)     the same, of a session that this makes
//   Session::orShared(key) as in the contract
#ifndef HEARTH_KIT_SESSION_H
#define HEARTH_KIT_SESSION_H

#include <string>
#include <string_view>
#include <utility>

#include "hearth/kit/result.h"
#include "hearth/kit/text.h"
#include "hearth/local_db_ctrl.h"

namespace hearth {

// A key and how it is meant. Copies name the same session. Threads: any.
class Session {
 public:
  // The databases of "default". Allocates nothing.
  static Session shared() { return Session(kShared, false); }

  // The session's own databases. Whether they are there is asked at each use.
  // Failure: kBadArgument for a null or empty key, and one with a NUL inside.
  static Result<Session> of(Name key) {
    if (key.isEmpty()) {
      return noKey();
    }
    return Session(key.get(), std::string_view(key.get()) != kShared);
  }

  // Makes the session: registers its databases and loads every area's file.
  // Failure: kBadArgument as of; kBusy when there is a session with this key; kNoMemory.
  static Result<Session> open(Name key) {
    if (key.isEmpty()) {
      return noKey();
    }
    if (LocalDbCtrl::cloneNewDB(key.get()) == 0) {
      return detail::failure(Fault::kBusy,
                             "the session cannot be opened: there is one with this "
                             "key already, or no memory");
    }
    return Session(key.get(), true);
  }

  // The session's own databases while it has some, else those of "default". The contract logs an
  // error at each use without own ones.
  // Failure: kBadArgument as of.
  static Result<Session> orShared(Name key) {
    if (key.isEmpty()) {
      return noKey();
    }
    return Session(key.get(), false);
  }

  // Removes the session and its databases, waiting for those who hold one of its areas.
  // Requires: the calling thread holds none of them.
  void close() const { LocalDbCtrl::removeDB(key_.c_str()); }

  // Empty once it was moved from.
  const std::string& key() const { return key_; }

  // True when the session never stands for "default".
  bool isStrict() const { return isStrict_; }

 private:
  static constexpr const char* kShared = "default";

  Session(const char* key, bool isStrict) : key_(key), isStrict_(isStrict) {}

  static Failure noKey() {
    return detail::failure(Fault::kBadArgument,
                           "the session key is null, empty, or has a NUL inside");
  }

  std::string key_;
  bool isStrict_;
};

}  // namespace hearth

#endif
