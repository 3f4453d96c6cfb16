// A lock guard for the plain POSIX mutexes that the public face exposes.
#ifndef HEARTH_BASE_MUTEX_LOCK_H
#define HEARTH_BASE_MUTEX_LOCK_H

#include <pthread.h>

namespace hearth {

// Holds the mutex from its construction to the end of its scope. The mutex must be of the default
// kind, not held by this thread, and outlive the guard.
class MutexLock {
 public:
  explicit MutexLock(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  ~MutexLock() { pthread_mutex_unlock(&mutex_); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  pthread_mutex_t& mutex_;
};

}  // namespace hearth

#endif
