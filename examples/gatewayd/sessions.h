// Who is logged in: tokens, their expiry, and the databases that each session works on.
//
// Two secrets never meet: the token is what the browser shows, and nothing else ever holds it; the
// session key is what hearth gets, and may stand in a log.
//
// A session's databases live exactly as long as somebody points to the session: the store, until a
// log-out or expiry, and each request that works in it, to its end. So a request whose session ends
// meanwhile still finds the session's databases, never those of "default", and the last one of them
// takes the databases away for good.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H
#define HEARTH_EXAMPLES_GATEWAYD_SESSIONS_H

#include <hearth/kit.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class Session {
 public:
  // With `isOwner` the databases are this session's own, and end with it.
  Session(hearth::Session databases, std::string user, bool isOwner)
      : databases_(std::move(databases)), user_(std::move(user)), isOwner_(isOwner) {}
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const hearth::Session& databases() const { return databases_; }
  const std::string& user() const { return user_; }

 private:
  const hearth::Session databases_;
  const std::string user_;
  const bool isOwner_;
};

// Null for no session. Whoever has one keeps it alive.
using SessionPointer = std::shared_ptr<const Session>;

class SessionStore {
 public:
  // `ownDatabases`: each session gets a handler of its own.
  SessionStore(bool ownDatabases, std::chrono::seconds idleLimit)
      : ownDatabases_(ownDatabases), idleLimit_(idleLimit) {}

  // A new session and its token; an empty token when there are too many sessions. The user's oldest
  // one gives way where it is the user who has too many, or where nobody else can be blamed.
  std::string open(const std::string& user);

  // The session of a token, which this counts as a use of; null when there is none (any more).
  SessionPointer find(const std::string& token);

  void close(const std::string& token);

  // Ends a user's sessions but for the one of this token.
  void closeOthers(const std::string& user, const std::string& token);

  std::chrono::seconds idleLimit() const { return idleLimit_; }

 private:
  struct Entry {
    SessionPointer session;
    std::chrono::steady_clock::time_point lastUse;
  };
  // Sessions that leave the store; their databases end where this does, outside of the lock.
  using Leaving = std::vector<SessionPointer>;

  void dropIdle(Leaving& leaving);
  void makeRoom(const std::string& user, Leaving& leaving);

  const bool ownDatabases_;
  const std::chrono::seconds idleLimit_;
  std::mutex lock_;
  std::map<std::string, Entry> sessions_;  // by token; guarded by lock_
  unsigned int made_ = 0;                  // guarded by lock_
};

#endif
