#include "examples/gatewayd/sessions.h"

#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>

#include "examples/backend.h"

bool Databases::Stamp::operator==(const Stamp& other) const {
  return inode == other.inode && size == other.size && seconds == other.seconds &&
         nanoseconds == other.nanoseconds;
}

Databases::Databases(std::string key) : key_(std::move(key)) {
  for (unsigned int area = API_GATEWAY; area <= API_MISC; ++area) {
    stamps_[area] = stampOf(area);
  }
}

Databases::Use Databases::use(API_TYPE_T area) {
  for (;;) {
    Use current(inUse_);
    if (isCurrent(area)) {
      return current;
    }
    current.unlock();
    const std::unique_lock<std::shared_mutex> alone(inUse_);
    if (!isCurrent(area)) {
      reload();
    }
  }
}

void Databases::noteSaved(API_TYPE_T area) {
  const std::lock_guard<std::mutex> lock(stampsLock_);
  stamps_[area] = stampOf(area);
}

Databases::Stamp Databases::stampOf(unsigned int area) {
  struct stat status = {};
  Stamp stamp;
  if (stat(LocalDbCtrl::getFileName(area), &status) == 0) {
    stamp.inode = status.st_ino;
    stamp.size = status.st_size;
    stamp.seconds = status.st_mtim.tv_sec;
    stamp.nanoseconds = status.st_mtim.tv_nsec;
  }
  return stamp;
}

bool Databases::isCurrent(unsigned int area) {
  const Stamp now = stampOf(area);
  const std::lock_guard<std::mutex> lock(stampsLock_);
  return stamps_[area] == now;
}

// The stamps are taken before the files are read: a file that is replaced in between looks stale
// once more, and never current when it is not.
void Databases::reload() {
  {
    const std::lock_guard<std::mutex> lock(stampsLock_);
    for (unsigned int area = API_GATEWAY; area <= API_MISC; ++area) {
      stamps_[area] = stampOf(area);
    }
  }
  LocalDbCtrl::removeDB(key_.c_str());
  LocalDbCtrl::cloneNewDB(key_.c_str());
}

SessionStore::SessionStore(bool ownDatabases, std::chrono::seconds idleLimit)
    : ownDatabases_(ownDatabases), idleLimit_(idleLimit) {
  if (!ownDatabases_) {
    shared_ = std::make_shared<Databases>(kDefaultSession);
  }
}

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
  auto session = std::make_shared<Session>(key);
  if (ownDatabases_) {
    LocalDbCtrl::cloneNewDB(key.c_str());
  } else {
    session->databases = shared_;
  }
  session->user = user;
  session->lastUse = std::chrono::steady_clock::now();
  sessions_.emplace(token, std::move(session));
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
    LocalDbCtrl::removeDB(entry->second->databases->key().c_str());
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
