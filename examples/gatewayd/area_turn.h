// Turns at an area, one request at a time and in the order in which they ask. hearth's own waiting
// is by looking again and again, which is right between processes; among the threads of one, which
// come back at once, somebody might look in vain for long.
#ifndef HEARTH_EXAMPLES_GATEWAYD_AREA_TURN_H
#define HEARTH_EXAMPLES_GATEWAYD_AREA_TURN_H

#include <hearth/kit.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

// From the moment that it is this request's turn to the end of the object.
class AreaTurn {
 public:
  // Waits as long as limits::kPatience allows.
  explicit AreaTurn(API_TYPE_T area);
  ~AreaTurn();
  AreaTurn(const AreaTurn&) = delete;
  AreaTurn& operator=(const AreaTurn&) = delete;

  // What is left of the patience, to wait for other processes; none when the turn did not come.
  std::chrono::milliseconds patience() const;

 private:
  using Clock = std::chrono::steady_clock;

  struct Queue {
    std::mutex mutex;
    std::condition_variable moved;
    std::deque<const AreaTurn*> waiting;  // the first one has its turn; guarded by mutex
  };
  static Queue& queueOf(API_TYPE_T area);

  Queue& queue_;
  const Clock::time_point end_;
};

#endif
