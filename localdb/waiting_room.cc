#include "localdb/waiting_room.h"

#include <ctime>

namespace hearth {

// The clock of the time-outs must not be one that people set.
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

// The library always wakes. But a slot's mutex and state are public fields, and a program that
// takes the mutex itself wakes nobody when it gives it back.
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
