// Where the threads wait that something about a slot has to change for.
#ifndef HEARTH_LOCALDB_WAITING_ROOM_H
#define HEARTH_LOCALDB_WAITING_ROOM_H

#include <pthread.h>

#include <atomic>

#include "base/mutex_lock.h"
#include "base/no_cancellation.h"

namespace hearth {

// A condition variable that costs its callers one atomic step while nobody waits.
class WaitingRoom {
 public:
  WaitingRoom();
  ~WaitingRoom();
  WaitingRoom(const WaitingRoom&) = delete;
  WaitingRoom& operator=(const WaitingRoom&) = delete;

  // Returns once isOver() is true. It is asked at once and after each wake; it must not wait.
  template <typename Question>
  void waitUntil(Question isOver) {
    const NoCancellation finish;
    waiting_.fetch_add(1, std::memory_order_acq_rel);
    {
      const MutexLock lock(mutex_);
      while (!isOver()) {
        sleep();
      }
    }
    waiting_.fetch_sub(1, std::memory_order_acq_rel);
  }

  // The same for those who all want one thing. They get it in the order in which they came: each is
  // asked when those before it have returned.
  template <typename Question>
  void waitInTurn(Question isOver) {
    const unsigned int mine = nextTurn_.fetch_add(1, std::memory_order_acq_rel);
    waitUntil([&] { return turn_.load(std::memory_order_acquire) == mine && isOver(); });
    turn_.store(mine + 1, std::memory_order_release);
    wake();
  }

  // True while somebody waits for its turn; whoever comes now should do so too.
  bool isQueue() const {
    return turn_.load(std::memory_order_relaxed) != nextTurn_.load(std::memory_order_relaxed);
  }

  // To be called after a change that may end a wait. A waiter that this step does not count yet
  // counts itself after it, and so asks after the change.
  void wake() {
    if (waiting_.fetch_add(0, std::memory_order_acq_rel) != 0) {
      wakeAll();
    }
  }

 private:
  // Until the next wake or for a while. Requires mutex_.
  void sleep();
  void wakeAll();

  std::atomic<unsigned int> waiting_{0};
  std::atomic<unsigned int> turn_{0};
  std::atomic<unsigned int> nextTurn_{0};
  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t change_;
};

}  // namespace hearth

#endif
