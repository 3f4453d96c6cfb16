// The connections that are open, and which of them must end: one whose request takes too long, and
// where there are too many, the one that has kept the server waiting longest.
//
// A connection is ended by shutting its socket down; the server then finds it closed, as if the
// client had left, and cleans up. The descriptor is safe to use: the server calls closed() before
// it gives it back to the system.
#ifndef HEARTH_EXAMPLES_GATEWAYD_CONNECTIONS_H
#define HEARTH_EXAMPLES_GATEWAYD_CONNECTIONS_H

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

class Connections {
 public:
  Connections();
  ~Connections();
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  // A client has connected. May end another connection to make room.
  void opened(int fd, const std::string& address);

  // A request is complete and is worked on; such a connection is not ended to make room. A known
  // client, one with a session, goes last.
  void working(int fd, bool isKnown);

  // The request was answered; the time for the next one begins.
  void answered(int fd);

  void closed(int fd);

 private:
  using Clock = std::chrono::steady_clock;

  struct Connection {
    std::string address;
    Clock::time_point since;  // opened or last answered
    bool isWorking = false;
    bool isKnown = false;
    bool isEnded = false;
  };

  void makeRoom(int newest, const std::string& address, std::size_t most);
  void watch();

  std::mutex mutex_;
  std::condition_variable stops_;
  std::map<int, Connection> open_;  // by descriptor; guarded by mutex_
  bool isStopping_ = false;         // guarded by mutex_
  std::thread watch_;               // the last member: it uses the others
};

#endif
