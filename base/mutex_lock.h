// A lock guard for plain POSIX mutexes, since the public headers expose those.
#ifndef HEARTH_BASE_MUTEX_LOCK_H
#define HEARTH_BASE_MUTEX_LOCK_H

#include <pthread.h>

namespace hearth {

// Holds the mutex from its construction to the end of its scope. Requires a mutex of the default
// kind that this thread does not hold yet and that outlives the guard.
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
