// An area for a while: a guard that locks an area's slot, shows the value there, and unlocks on
// every way out. change.h builds on it what changes an area.
//
//   hearth::Result<hearth::AreaLock> radio = hearth::AreaLock::take(API_WIFI, "radios.[0]");
//   if (!radio) {
//     return answer(radio.failure());  // held, no such value, no database, no area, no session
//   }
//   const int channel = hearth::getOr(*radio, "channel", 0);
//
// What is shown is what the file holds: memory that was loaded from a file that another process or
// session has replaced since is read anew. To know that without reading, the kit remembers which
// file each slot was read from; a file younger than its time stamps can tell apart is read once
// more. What users of the bare contract have left in memory without saving it is lost by such a
// reading: keep to the kit, or to the contract, for one area.
#ifndef HEARTH_KIT_AREA_LOCK_H
#define HEARTH_KIT_AREA_LOCK_H

#include <json-c/json.h>
#include <pthread.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "hearth/json_data.h"
#include "hearth/kit/area.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/parse.h"
#include "hearth/kit/read.h"
#include "hearth/kit/result.h"
#include "hearth/kit/session.h"
#include "hearth/kit/text.h"
#include "hearth/local_db_ctrl.h"

namespace hearth {
namespace detail {

// The end of a wait, and the pauses before it.
class Patience {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Patience(std::chrono::milliseconds wait)
      : end_(Clock::now() + std::clamp<std::chrono::milliseconds>(wait, kNone, kMost)) {}

  // Pauses a little, longer each time. False, at once, when the wait is over.
  bool pause() {
    const Clock::duration left = end_ - Clock::now();
    if (left <= Clock::duration::zero()) {
      return false;
    }
    const auto pause = std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::min<Clock::duration>(pause_, left));
    const timespec time = {0, static_cast<long>(pause.count())};
    nanosleep(&time, nullptr);
    pause_ = std::min(pause_ * 2, kLongestPause);
    return true;
  }

 private:
  static constexpr std::chrono::milliseconds kNone{0};
  static constexpr std::chrono::hours kMost{24};
  static constexpr std::chrono::microseconds kLongestPause{10000};

  Clock::time_point end_;
  std::chrono::microseconds pause_{100};
};

// Which contents a file has, as far as its status tells.
struct FileState {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified = {};
  timespec changed = {};

  static FileState of(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
  }

  bool operator==(const FileState& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           isSame(modified, other.modified) && isSame(changed, other.changed);
  }

  // True when a file that replaces this one from now on has another state. One that is replaced at
  // once may have the same: inodes are used again, and time stamps stand still between two ticks of
  // the clock, on some file systems for a second or two.
  bool isSettled() const {
    constexpr int64_t kTick = 20'000'000;
    constexpr int64_t kCoarseTick = 2'100'000'000;
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const int64_t seconds = int64_t{now.tv_sec} - int64_t{changed.tv_sec};
    if (seconds > 3) {
      return true;
    }
    const int64_t age = seconds * 1'000'000'000 + (now.tv_nsec - changed.tv_nsec);
    return seconds >= 0 && age > (changed.tv_nsec != 0 ? kTick : kCoarseTick);
  }

 private:
  static bool isSame(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
  }
};

// From which state of its file a slot's value was read. Forgetting one costs a reading, no more, so
// there is room for some tens of slots and none to grow: a slot and its value are known by their
// addresses. An address that is used again does no harm: what is loaded while the file is in a
// state is what it holds in that state.
class KnownFiles {
 public:
  bool isCurrent(const TreeMapObject* slot, const FileState& state) {
    pthread_mutex_lock(&mutex_);
    const Entry& entry = entries_[placeOf(slot)];
    const bool isKnown = entry.slot == slot && entry.value == slot->jobj && slot->jobj != nullptr &&
                         entry.state == state;
    pthread_mutex_unlock(&mutex_);
    return isKnown;
  }

  void remember(const TreeMapObject* slot, const FileState& state) {
    pthread_mutex_lock(&mutex_);
    entries_[placeOf(slot)] = {slot, slot->jobj, state};
    pthread_mutex_unlock(&mutex_);
  }

 private:
  struct Entry {
    const TreeMapObject* slot = nullptr;
    const json_object* value = nullptr;
    FileState state;
  };
  static constexpr std::size_t kEntries = 64;

  static std::size_t placeOf(const TreeMapObject* slot) {
    const auto address = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(slot));
    return static_cast<std::size_t>(address * 0x9E3779B97F4A7C15U >> 58U);
  }
  static_assert(kEntries == 1U << (64 - 58), "an address picks one of the entries by 6 bits");

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  Entry entries_[kEntries];
};

inline KnownFiles knownFiles;

inline Failure noDatabase(unsigned int area, const char* file, const char* why) {
  return failure(Fault::kNoDatabase, "the area " + std::string(API_DATA_DIR[area]) +
                                         " has no database: " + file + ": " + why);
}

// The file's status, or why there is none.
inline Result<FileState> stateOf(unsigned int area, const char* file) {
  struct stat status = {};
  if (stat(file, &status) != 0) {
    return noDatabase(area, file, std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    return noDatabase(area, file, "no regular file");
  }
  return FileState::of(status);
}

// Reads the area's file into the slot, unless the slot's value came from it as it is. On a failure
// the slot is as it was. Requires: the calling thread holds the slot.
inline Result<void> refresh(TreeMapObject* slot, unsigned int area) {
  const char* const file = LocalDbCtrl::getFileName(area);
  const Result<FileState> before = stateOf(area, file);
  if (!before) {
    return before.failure();
  }
  if (knownFiles.isCurrent(slot, *before)) {
    return {};
  }
  const Handle fresh(JsonData::createObjectFromFile(file));
  if (!fresh) {
    return noDatabase(area, file, "it was removed");
  }
  if (fresh->jobj == nullptr) {
    Failure reason = parseFile(file).failure();
    const bool isUnreadable = reason.fault == Fault::kNoFile;
    if (reason.fault == Fault::kNone) {
      reason.sentence = std::string(file) + ": there is no value that a database can be";
    }
    reason.fault = isUnreadable ? Fault::kNoDatabase : Fault::kBadDatabase;
    return reason;
  }
  std::swap(slot->jobj, fresh->jobj);
  const Result<FileState> after = stateOf(area, file);
  if (after && *after == *before && before->isSettled()) {
    knownFiles.remember(slot, *before);
  }
  return {};
}

// A slot that the calling thread holds, from the lock to the unlock.
class HeldSlot {
 public:
  HeldSlot() = default;
  HeldSlot(HeldSlot&& other) noexcept
      : area_(other.area_),
        session_(std::move(other.session_)),
        handler_(other.handler_),
        object_(std::exchange(other.object_, nullptr)),
        holder_(other.holder_) {}
  HeldSlot& operator=(HeldSlot&& other) noexcept {
    if (this != &other) {
      end();
      area_ = other.area_;
      session_ = std::move(other.session_);
      handler_ = other.handler_;
      object_ = std::exchange(other.object_, nullptr);
      holder_ = other.holder_;
    }
    return *this;
  }
  ~HeldSlot() { end(); }

  static Result<HeldSlot> take(unsigned int area, const Session& session, Patience& patience) {
    const char* const key = session.key().c_str();
    const LOCALDB_HANDLER* const handler = LocalDbCtrl::getDBByKey(key);
    if (handler == nullptr) {
      return failure(Fault::kNoSession,
                     "there is no database handler: LocalDbCtrl::init was not "
                     "called, or \"default\" was removed");
    }
    if (session.isStrict() && isShared(handler)) {
      return closed(session);
    }
    HeldSlot slot(area, session, handler);
    for (;;) {
      slot.object_ = LocalDbCtrl::lockDbObject(area, "", key);
      if (slot.object_ != nullptr) {
        break;
      }
      Result<FileState> state = stateOf(area, LocalDbCtrl::getFileName(area));
      if (!state) {
        return state.failure();
      }
      if (!patience.pause()) {
        return held(area);
      }
    }
    // The session may have gone, and the lock be one on "default", since the key was looked up.
    if (session.isStrict() && !slot.isStillThere()) {
      return closed(session);
    }
    return slot;
  }

  static Failure held(unsigned int area) {
    return failure(Fault::kBusy, "another request or process holds the area " +
                                     std::string(API_DATA_DIR[area]) + "; try again");
  }

  // The slot's own handle; null when nothing is held.
  TreeMapObject* object() const { return object_; }
  unsigned int area() const { return area_; }

  // Why the holder may not save; a fault of kNone when it may.
  Failure whyNot() const {
    if (object_ == nullptr) {
      return failure(Fault::kEnded, "the area is not held any more");
    }
    return isStillThere() ? Failure() : closed(session_);
  }

  // True when the slot is held, but by another thread, which alone can use and end the lock.
  bool isOthers() const {
    return object_ != nullptr && pthread_equal(holder_, pthread_self()) == 0;
  }

  void end() {
    if (object_ != nullptr) {
      object_ = nullptr;
      LocalDbCtrl::unlockDbObject(area_, session_.key().c_str());
    }
  }

 private:
  HeldSlot(unsigned int area, const Session& session, const LOCALDB_HANDLER* handler)
      : area_(area), session_(session), handler_(handler), holder_(pthread_self()) {}

  static bool isShared(const LOCALDB_HANDLER* handler) {
    return LocalDbCtrl::getDBByKey(Session::shared().key().c_str()) == handler;
  }

  static Failure closed(const Session& session) {
    return failure(Fault::kNoSession, "the session " + inQuotes(session.key()) + " is closed");
  }

  // Whether the key still names what it named before the lock. A handler that is held is not freed,
  // so another one never has its address.
  bool isStillThere() const { return LocalDbCtrl::getDBByKey(session_.key().c_str()) == handler_; }

  unsigned int area_ = 0;
  Session session_ = Session::shared();
  const LOCALDB_HANDLER* handler_ = nullptr;  // compared, never followed
  TreeMapObject* object_ = nullptr;           // the slot's own; null when nothing is held
  pthread_t holder_ = {};
};

// What is wrong with the arguments of a lock; a fault of kNone when nothing is.
inline Failure wrongArguments(unsigned int area, Name path) {
  if (!areaNumbered(area)) {
    return noArea(area);
  }
  if (path.isNull()) {
    return failure(Fault::kBadArgument, "the path is null, or has a NUL inside");
  }
  if (LocalDbCtrl::getFileName(area) == nullptr) {
    return failure(Fault::kSystem, "the name of the area's database is longer than 255 characters");
  }
  return {};
}

inline Failure noValue(unsigned int area, Name path) {
  return failure(Fault::kNoValue, "the area " + std::string(API_DATA_DIR[area]) +
                                      " has nothing at " + inQuotes(path.get()));
}

}  // namespace detail

// Threads: a lock is taken, used and ended on one thread; each thread takes its own. Do not take an
// area that the thread holds already: it would wait for itself.
class AreaLock {
 public:
  // Takes the area for reading, waiting at most `wait` for a holder; the area's path "" is the
  // whole database. Failure, with nothing held: kBusy when the area stays held; kNoValue when
  // nothing is at path, JSON null included; kNoDatabase when the area's file is missing or cannot
  // be read; kBadDatabase when it does not parse, with line and column; kNoArea; kNoSession when
  // the session was closed or the database not started; kBadArgument for a null path or one with a
  // NUL inside; kSystem.
  // Cost: a lock, an unlock and a stat of the file; reading it anew when it was replaced.
  static Result<AreaLock> take(unsigned int area, Name path,
                               const Session& session = Session::shared(),
                               std::chrono::milliseconds wait = {}) {
    Failure wrong = detail::wrongArguments(area, path);
    if (wrong.fault != Fault::kNone) {
      return wrong;
    }
    detail::Patience patience(wait);
    Result<detail::HeldSlot> slot = detail::HeldSlot::take(area, session, patience);
    if (!slot) {
      return slot.failure();
    }
    const Result<void> refreshed = detail::refresh(slot->object(), area);
    if (!refreshed) {
      return refreshed.failure();
    }
    const View value = find(*slot->object(), path);
    if (!value) {
      return detail::noValue(area, path);
    }
    return AreaLock(std::move(*slot), value);
  }

  // Ends the lock now. Nothing happens when it has ended.
  void end() {
    value_ = View();
    slot_.end();
  }

  // True while the area is held by this lock.
  bool isHeld() const { return slot_.object() != nullptr; }

  // The value at the path; nothing once the lock has ended. What is read through it, texts
  // included, is valid while the lock is held. To change it, use a Change.
  operator View() const& {  // NOLINT(google-explicit-constructor)
    return isHeld() ? value_ : View();
  }
  operator View() const&& = delete;

 private:
  AreaLock(detail::HeldSlot slot, View value) : slot_(std::move(slot)), value_(value) {}

  detail::HeldSlot slot_;
  View value_;
};

}  // namespace hearth

#endif
