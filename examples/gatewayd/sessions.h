// Who is logged in: tokens, their expiry, and the databases that each session works on.
//
// Two secrets never meet: the token is what the browser shows, and nothing else ever holds it; the
// session key is what hearth gets, and may stand in a log.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H
#define HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>

#include "hearth/hearth.h"

// The databases under one session key.
//
// A handler keeps what it has loaded until it saves, and other sessions (or an operator) save to
// the same files. So each use first looks whether the area's file is still the one that was loaded,
// and makes the handler anew when it is not.
class Databases {
 public:
  // Requires that LocalDbCtrl knows the key, or will fall back to "default" for it.
  explicit Databases(std::string key);

  const std::string& key() const { return key_; }

  // Held for the time of one use: the handler is not replaced meanwhile.
  using Use = std::shared_lock<std::shared_mutex>;
  [[nodiscard]] Use use(API_TYPE_T area);

  // Takes note that this session itself has just saved the area. Requires a use.
  void noteSaved(API_TYPE_T area);

 private:
  struct Stamp {
    uint64_t inode = 0;
    int64_t size = -1;
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    bool operator==(const Stamp& other) const;
  };
  static Stamp stampOf(unsigned int area);
  bool isCurrent(unsigned int area);
  void reload();

  const std::string key_;
  std::shared_mutex inUse_;
  std::mutex stampsLock_;
  Stamp stamps_[8];  // guarded by stampsLock_
};

struct Session {
  explicit Session(const std::string& key) : databases(std::make_shared<Databases>(key)) {}

  std::shared_ptr<Databases> databases;
  std::string user;
  std::chrono::steady_clock::time_point lastUse;  // guarded by the store's lock
};

class SessionStore {
 public:
  // `ownDatabases`: each session gets a handler of its own.
  SessionStore(bool ownDatabases, std::chrono::seconds idleLimit);
  ~SessionStore();

  // A new session and its token; an empty token when there are too many sessions already.
  std::string open(const std::string& user);

  // The session of a token, which this counts as a use of; null when there is none (any more).
  std::shared_ptr<Session> find(const std::string& token);

  void close(const std::string& token);

  std::chrono::seconds idleLimit() const { return idleLimit_; }

 private:
  using ByToken = std::map<std::string, std::shared_ptr<Session>>;

  void dropIdle();
  void drop(ByToken::iterator entry);

  static constexpr std::size_t kMostSessions = 16;

  const bool ownDatabases_;
  const std::chrono::seconds idleLimit_;
  std::mutex lock_;
  ByToken sessions_;       // guarded by lock_
  unsigned int made_ = 0;  // guarded by lock_
  std::shared_ptr<Databases> shared_;
};

// True when the texts are equal, in a time that does not tell where they differ.
bool equalInConstantTime(const std::string& left, const std::string& right);

// A secret of 128 random bits, as hexadecimal text; empty when the system gives none.
std::string randomSecret();

#endif
