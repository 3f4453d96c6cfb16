// Who is logged in: tokens, their expiry, and the databases that each session works on.
//
// Two secrets never meet: the token is what the browser shows, and nothing else ever holds it; the
// session key is what hearth gets, and may stand in a log.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H
#define HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H

#include <hearth/kit.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>

struct Session {
  hearth::Session databases;
  std::string user;
  std::chrono::steady_clock::time_point lastUse;  // guarded by the store's lock
};

class SessionStore {
 public:
  // `ownDatabases`: each session gets a handler of its own.
  SessionStore(bool ownDatabases, std::chrono::seconds idleLimit)
      : ownDatabases_(ownDatabases), idleLimit_(idleLimit) {}
  ~SessionStore();
  SessionStore(const SessionStore&) = delete;
  SessionStore& operator=(const SessionStore&) = delete;

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
};

// True when the texts are equal, in a time that does not tell where they differ.
bool equalInConstantTime(const std::string& left, const std::string& right);

// A secret of 128 random bits, as hexadecimal text; empty when the system gives none.
std::string randomSecret();

#endif
