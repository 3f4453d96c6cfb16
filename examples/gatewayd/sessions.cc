#include "sessions.h"

#include <sys/random.h>

#include <array>
#include <cstdio>

SessionStore::~SessionStore() {
  while (!sessions_.empty()) {
    drop(sessions_.begin());
  }
}

std::string SessionStore::open(const std::string& user) {
  std::string token = randomSecret();
  const std::lock_guard<std::mutex> lock(lock_);
  dropIdle();
  if (token.empty() || sessions_.size() >= kMostSessions) {
    return "";
  }
  const std::string key = "session-" + std::to_string(++made_);
  const hearth::Result<hearth::Session> databases =
      ownDatabases_ ? hearth::Session::open(key) : hearth::Session::shared();
  if (!databases) {
    return "";
  }
  sessions_.emplace(token, std::make_shared<Session>(
                               Session{*databases, user, std::chrono::steady_clock::now()}));
  return token;
}

std::shared_ptr<Session> SessionStore::find(const std::string& token) {
  const std::lock_guard<std::mutex> lock(lock_);
  dropIdle();
  const auto entry = sessions_.find(token);
  if (entry == sessions_.end()) {
    return nullptr;
  }
  entry->second->lastUse = std::chrono::steady_clock::now();
  return entry->second;
}

void SessionStore::close(const std::string& token) {
  const std::lock_guard<std::mutex> lock(lock_);
  const auto entry = sessions_.find(token);
  if (entry != sessions_.end()) {
    drop(entry);
  }
}

void SessionStore::dropIdle() {
  const auto now = std::chrono::steady_clock::now();
  for (auto entry = sessions_.begin(); entry != sessions_.end();) {
    const auto current = entry++;
    if (now - current->second->lastUse > idleLimit_) {
      drop(current);
    }
  }
}

// A request that still works in the session keeps its slot until it is done; hearth waits for it.
void SessionStore::drop(ByToken::iterator entry) {
  if (ownDatabases_) {
    entry->second->databases.close();
  }
  sessions_.erase(entry);
}

bool equalInConstantTime(const std::string& left, const std::string& right) {
  unsigned int difference = left.size() == right.size() ? 0 : 1;
  for (std::size_t i = 0; i < left.size() && !right.empty(); ++i) {
    difference |= static_cast<unsigned char>(left[i]) ^
                  static_cast<unsigned int>(static_cast<unsigned char>(right[i % right.size()]));
  }
  return difference == 0;
}

std::string randomSecret() {
  std::array<unsigned char, 16> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    return "";
  }
  std::string text;
  for (const unsigned char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned int>(byte));
    text += digits;
  }
  return text;
}
