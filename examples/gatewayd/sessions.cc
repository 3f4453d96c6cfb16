#include "sessions.h"

#include "secrets.h"
#include "server_limits.h"

Session::~Session() {
  if (isOwner_) {
    databases_.close();
  }
}

std::string SessionStore::open(const std::string& user) {
  std::string token = randomSecret();
  Leaving leaving;
  std::string key;
  {
    const std::lock_guard<std::mutex> lock(lock_);
    key = "session-" + std::to_string(++made_);
  }
  const hearth::Result<hearth::Session> databases =
      ownDatabases_ ? hearth::Session::open(key) : hearth::Session::shared();
  if (!databases) {
    return "";
  }
  auto session = std::make_shared<const Session>(*databases, user, ownDatabases_);
  const std::lock_guard<std::mutex> lock(lock_);
  dropIdle(leaving);
  makeRoom(user, leaving);
  if (token.empty() || sessions_.size() >= limits::kSessions) {
    leaving.push_back(std::move(session));
    return "";
  }
  sessions_[token] = {std::move(session), std::chrono::steady_clock::now()};
  return token;
}

SessionPointer SessionStore::find(const std::string& token) {
  Leaving leaving;
  const std::lock_guard<std::mutex> lock(lock_);
  dropIdle(leaving);
  const auto entry = sessions_.find(token);
  if (entry == sessions_.end()) {
    return nullptr;
  }
  entry->second.lastUse = std::chrono::steady_clock::now();
  return entry->second.session;
}

void SessionStore::close(const std::string& token) {
  SessionPointer leaving;
  const std::lock_guard<std::mutex> lock(lock_);
  const auto entry = sessions_.find(token);
  if (entry != sessions_.end()) {
    leaving = entry->second.session;
    sessions_.erase(entry);
  }
}

void SessionStore::closeOthers(const std::string& user, const std::string& token) {
  Leaving leaving;
  const std::lock_guard<std::mutex> lock(lock_);
  for (auto entry = sessions_.begin(); entry != sessions_.end();) {
    const auto current = entry++;
    if (current->second.session->user() == user && current->first != token) {
      leaving.push_back(current->second.session);
      sessions_.erase(current);
    }
  }
}

void SessionStore::dropIdle(Leaving& leaving) {
  const auto now = std::chrono::steady_clock::now();
  for (auto entry = sessions_.begin(); entry != sessions_.end();) {
    const auto current = entry++;
    if (now - current->second.lastUse > idleLimit_) {
      leaving.push_back(current->second.session);
      sessions_.erase(current);
    }
  }
}

// Ends the user's least recently used session when the user, or everybody, has as many as allowed.
void SessionStore::makeRoom(const std::string& user, Leaving& leaving) {
  std::size_t count = 0;
  auto oldest = sessions_.end();
  for (auto entry = sessions_.begin(); entry != sessions_.end(); ++entry) {
    if (entry->second.session->user() != user) {
      continue;
    }
    ++count;
    if (oldest == sessions_.end() || entry->second.lastUse < oldest->second.lastUse) {
      oldest = entry;
    }
  }
  const bool isFull = sessions_.size() >= limits::kSessions || count >= limits::kSessionsOfUser;
  if (isFull && oldest != sessions_.end()) {
    leaving.push_back(oldest->second.session);
    sessions_.erase(oldest);
  }
}
