// A change that happens or does not.
//
//   hearth::Result<hearth::Change> change =
//       hearth::Change::begin(API_WIFI, "radios.[0]", session, std::chrono::seconds(2));
//   if (!change) {
//     return answer(change.failure());
//   }
//   change->set("channel", 11).set("bandwidth", "40");
//   const hearth::Result<void> done = change->commit();
//
// What is edited is a copy. The commit compares it with the area's schema, saves it and puts it in
// place; a change that is refused, or left by a return or an exception, leaves memory and file as
// they were.
//
// Two changes of one area never overlap, whichever threads, sessions or processes make them: a
// change holds an advisory lock (flock) on the area's folder, as the hearth command does, and
// begins with what the file holds then. So none loses what another has saved. Whoever saves by the
// bare contract takes no part in that.
#ifndef HEARTH_KIT_CHANGE_H
#define HEARTH_KIT_CHANGE_H

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <utility>

#include "hearth/json_data.h"
#include "hearth/kit/area_lock.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/render.h"
#include "hearth/kit/result.h"
#include "hearth/kit/session.h"
#include "hearth/kit/text.h"
#include "hearth/kit/validate.h"
#include "hearth/kit/write.h"

namespace hearth {
namespace detail {

// The turn of one change in an area, among all processes. Each has a description of its own of the
// folder, so that threads exclude each other as processes do.
class AreaTurn {
 public:
  AreaTurn() = default;
  AreaTurn(AreaTurn&& other) noexcept : folder_(std::exchange(other.folder_, -1)) {}
  AreaTurn& operator=(AreaTurn&& other) noexcept {
    std::swap(folder_, other.folder_);
    return *this;
  }
  ~AreaTurn() { end(); }

  static Result<AreaTurn> take(unsigned int area, Patience& patience) {
    std::string folder = LocalDbCtrl::getFileName(area);
    folder.erase(folder.rfind('/'));
    AreaTurn turn;
    turn.folder_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (turn.folder_ < 0) {
      return noDatabase(area, folder.c_str(), std::strerror(errno));
    }
    while (flock(turn.folder_, LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK && errno != EINTR) {
        return failure(Fault::kSystem, folder + " cannot be locked: " + std::strerror(errno));
      }
      if (!patience.pause()) {
        return HeldSlot::held(area);
      }
    }
    return turn;
  }

  void end() {
    if (folder_ >= 0) {
      close(std::exchange(folder_, -1));
    }
  }

 private:
  int folder_ = -1;
};

}  // namespace detail

struct ChangeOptions {
  unsigned int limit = 1;  // how many violations a refusal tells
  bool isStrict = false;   // an area without a schema refuses every change
};

// Threads: a change is begun, used and ended on one thread.
class Change {
 public:
  Change(Change&&) noexcept = default;
  Change& operator=(Change&& other) noexcept {
    if (this != &other) {
      end();
      turn_ = std::move(other.turn_);
      slot_ = std::move(other.slot_);
      copy_ = std::move(other.copy_);
      at_ = std::move(other.at_);
      noted_ = std::move(other.noted_);
    }
    return *this;
  }

  // Takes the area and copies its database, waiting at most `wait` for other changes and readers.
  // Failure, with nothing held: as AreaLock::take; kNotStored also when there is no memory for the
  // copy.
  // Cost: that of a lock and of a deep copy of the whole database.
  static Result<Change> begin(unsigned int area, Name path,
                              const Session& session = Session::shared(),
                              std::chrono::milliseconds wait = {}) {
    Failure wrong = detail::wrongArguments(area, path);
    if (wrong.fault != Fault::kNone) {
      return wrong;
    }
    detail::Patience patience(wait);
    Result<detail::AreaTurn> turn = detail::AreaTurn::take(area, patience);
    if (!turn) {
      return turn.failure();
    }
    Result<detail::HeldSlot> slot = detail::HeldSlot::take(area, session, patience);
    if (!slot) {
      return slot.failure();
    }
    const Result<void> refreshed = detail::refresh(slot->object(), area);
    if (!refreshed) {
      return refreshed.failure();
    }
    Result<Value> copied = copy(*slot->object());
    if (!copied) {
      return copied.failure();
    }
    Change change(std::move(*turn), std::move(*slot), Handle(new TreeMapObject(copied->release())));
    if (!change.enter(path)) {
      return detail::noValue(area, path);
    }
    return change;
  }

  // Stores a value at a path below the change's own; see write.h. A set that fails is remembered:
  // the commit then answers its failure. Result: the change, for the next set.
  template <typename T>
  Change& set(Name path, T&& value) {
    note(hearth::set(Edit(handle()), path, std::forward<T>(value)));
    return *this;
  }

  // Removes what is at a path below the change's own. False when nothing is there.
  bool remove(Name path) { return hearth::remove(Edit(handle()), path); }

  // Notes a failure: the commit answers the first that was noted.
  void note(const Result<void>& result) {
    if (!result && noted_.fault == Fault::kNone) {
      noted_ = result.failure();
    }
  }

  // The contract's handle on the copy of the value at the change's path, for its other operations;
  // null once the change has ended. It stays the change's, and lasts until that ends.
  TreeMapObject* handle() const { return at_ ? at_.get() : copy_.get(); }
  // Requires: the change has not ended.
  TreeMapObject* operator->() const { return handle(); }

  // The copy of the value at the change's path, for reading and for writing; nothing once the
  // change has ended.
  operator View() const& { return View(handle()); }  // NOLINT(google-explicit-constructor)
  operator Edit() const& { return Edit(handle()); }  // NOLINT(google-explicit-constructor)
  operator View() const&& = delete;
  operator Edit() const&& = delete;

  // The copy of the whole database.
  View database() const { return View(copy_.get()); }

  // Makes the change: what was edited is in the file, and in memory, when this answers success. The
  // change has ended either way, and the area is free; only on another thread nothing happens.
  // Failure, with memory and file as they were: that of the first set that failed; kNotStored for
  // what is nested deeper than the parser reads; kRefused when the area's schema,
  // "<area>_SCHEMA.ldb" beside its database, does not allow the result; kBadSchema when that is no
  // schema; kNoSchema when there is none and the options are strict; kNoSession when the session
  // was closed meanwhile; kNotSaved when the file could not be written; kEnded when the change has
  // ended or was moved away, and on another thread than the one that began it. Cost: that of
  // validating and saving the whole database.
  Result<void> commit(const ChangeOptions& options = {}) {
    if (slot_.isOthers()) {
      return detail::failure(Fault::kEnded, "the change was begun by another thread");
    }
    Result<void> done = tryToCommit(options);
    end();
    return done;
  }

  // Ends the change without making it. Nothing happens when it has ended.
  void end() {
    at_ = Handle();
    copy_ = Handle();
    slot_.end();
    turn_.end();
  }

 private:
  Change(detail::AreaTurn turn, detail::HeldSlot slot, Handle copied)
      : turn_(std::move(turn)), slot_(std::move(slot)), copy_(std::move(copied)) {}

  bool enter(Name path) {
    if (!path.isEmpty()) {
      at_ = Handle(copy_->get(path.get()));
      return static_cast<bool>(at_);
    }
    return true;
  }

  Result<void> tryToCommit(const ChangeOptions& options) {
    Failure wrong = slot_.whyNot();
    if (wrong.fault != Fault::kNone) {
      return wrong;
    }
    if (noted_.fault != Fault::kNone) {
      return noted_;
    }
    if (detail::isNestedDeeperThan(copy_, detail::kParserLevels)) {
      return detail::failure(Fault::kNotStored,
                             "the database would be nested too deeply to be read");
    }
    ValidateOptions validation;
    validation.limit = options.limit;
    validation.isStrict = options.isStrict;
    Result<void> valid = validateDatabase(copy_, slot_.area(), validation);
    if (!valid) {
      return valid;
    }
    const char* const file = LocalDbCtrl::getFileName(slot_.area());
    if (JsonData::saveObjectToFile(file, copy_.get()) != 0) {
      return detail::failure(Fault::kNotSaved, std::string(file) +
                                                   " could not be written; it is as "
                                                   "it was");
    }
    std::swap(slot_.object()->jobj, copy_->jobj);
    return {};
  }

  // In the order in which they are taken.
  detail::AreaTurn turn_;
  detail::HeldSlot slot_;
  Handle copy_;
  Handle at_;  // borrowed from the copy; empty for the path ""
  Failure noted_;
};

}  // namespace hearth

#endif
