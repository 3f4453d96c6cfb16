// A waiting room: threads sleep in it until something about a slot has changed.
//
// Each waiter brings a question and sleeps until the answer is yes. Whoever changes something that
// such a question looks at calls wake, and every waiter asks again.
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

  // Returns once isOver() is true. It is asked at once and after each wake, and must not wait.
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

  // Waits like waitUntil, but in a queue, for those who all want one thing: isOver() is asked only
  // when those who came before have returned.
  template <typename Question>
  void waitInTurn(Question isOver) {
    const unsigned int mine = nextTurn_.fetch_add(1, std::memory_order_acq_rel);
    waitUntil([&] { return turn_.load(std::memory_order_acquire) == mine && isOver(); });
    turn_.store(mine + 1, std::memory_order_release);
    wake();
  }

  // True while somebody waits in turn; whoever comes now should queue as well.
  bool hasQueue() const {
    return turn_.load(std::memory_order_relaxed) != nextTurn_.load(std::memory_order_relaxed);
  }

  // Call it after a change that may end a wait. It costs one atomic step when nobody waits. That
  // step misses nobody: a waiter that it does not see counts itself in later, and so asks its
  // question after the change.
  void wake() {
    if (waiting_.fetch_add(0, std::memory_order_acq_rel) != 0) {
      wakeAll();
    }
  }

 private:
  // Sleeps until the next wake, or for a while. Requires mutex_.
  void sleep();
  void wakeAll();

  std::atomic<unsigned int> waiting_{0};   // threads in waitUntil
  std::atomic<unsigned int> turn_{0};      // the number of the queue that is served
  std::atomic<unsigned int> nextTurn_{0};  // the number that the next one to queue gets
  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t change_;
};

}  // namespace hearth

#endif
