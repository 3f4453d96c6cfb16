// Sleeping and waking, on a condition variable.
#include "localdb/waiting_room.h"

#include <ctime>

namespace hearth {

// The naps are timed by the monotonic clock, because people set the other one.
WaitingRoom::WaitingRoom() {
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&change_, &attributes);
  pthread_condattr_destroy(&attributes);
}

WaitingRoom::~WaitingRoom() {
  pthread_cond_destroy(&change_);
  pthread_mutex_destroy(&mutex_);
}

// The library itself always wakes. But a slot's mutex and state are public fields: a program that
// takes the mutex by its own hand wakes nobody when it gives it back. So no nap lasts longer than
// 50 ms, and the sleeper then looks for itself.
void WaitingRoom::sleep() {
  constexpr long kLongestNap = 50'000'000;
  constexpr long kSecond = 1'000'000'000;
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_nsec += kLongestNap;
  end.tv_sec += end.tv_nsec / kSecond;
  end.tv_nsec %= kSecond;
  pthread_cond_timedwait(&change_, &mutex_, &end);
}

void WaitingRoom::wakeAll() {
  const MutexLock lock(mutex_);
  pthread_cond_broadcast(&change_);
}

}  // namespace hearth
