#include "connections.h"

#include <sys/socket.h>

#include <tuple>

#include "server_limits.h"

namespace {

// How late a connection may be found to be overdue.
constexpr std::chrono::milliseconds kLook{500};

}  // namespace

Connections::Connections() : watch_([this] { watch(); }) {}

Connections::~Connections() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isStopping_ = true;
  }
  stops_.notify_one();
  watch_.join();
}

void Connections::opened(int fd, const std::string& address) {
  const std::lock_guard<std::mutex> lock(mutex_);
  Connection& connection = open_[fd];
  connection = {};
  connection.address = address;
  connection.since = Clock::now();
  makeRoom(fd, address, limits::kConnectionsOfAddress);
  makeRoom(fd, "", limits::kConnections);
}

void Connections::working(int fd, bool isKnown) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = open_.find(fd);
  if (found != open_.end()) {
    found->second.isWorking = true;
    found->second.isKnown = isKnown;
  }
}

void Connections::answered(int fd) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = open_.find(fd);
  if (found != open_.end()) {
    found->second.isWorking = false;
    found->second.since = Clock::now();
  }
}

void Connections::closed(int fd) {
  const std::lock_guard<std::mutex> lock(mutex_);
  open_.erase(fd);
}

// Ends the connection that matters least when more than `most` are open: of this address, or of all
// where it is empty. Never the newest, which has had no time yet to say what it wants.
void Connections::makeRoom(int newest, const std::string& address, std::size_t most) {
  std::size_t count = 0;
  auto least = open_.end();
  for (auto entry = open_.begin(); entry != open_.end(); ++entry) {
    const Connection& connection = entry->second;
    if (connection.isEnded || (!address.empty() && connection.address != address)) {
      continue;
    }
    ++count;
    if (entry->first == newest || connection.isWorking) {
      continue;
    }
    const auto rank = [](const Connection& one) { return std::tie(one.isKnown, one.since); };
    if (least == open_.end() || rank(connection) < rank(least->second)) {
      least = entry;
    }
  }
  if (count > most) {
    const auto victim = least != open_.end() ? least : open_.find(newest);
    victim->second.isEnded = true;
    shutdown(victim->first, SHUT_RDWR);
  }
}

void Connections::watch() {
  std::unique_lock<std::mutex> lock(mutex_);
  while (!stops_.wait_for(lock, kLook, [this] { return isStopping_; })) {
    const Clock::time_point latest = Clock::now() - limits::kRequest;
    for (auto& [fd, connection] : open_) {
      if (connection.since < latest && !connection.isEnded && !connection.isWorking) {
        connection.isEnded = true;
        shutdown(fd, SHUT_RDWR);
      }
    }
  }
}
