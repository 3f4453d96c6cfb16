#include "tests/localdb/held_calls.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

std::atomic<int> SlowFlush::microseconds_{0};
std::atomic<int> SlowFlush::flushing_{0};
std::atomic<bool> EndlessNaps::areOn_{false};
std::atomic<int> EndlessNaps::asleep{0};

void SlowFlush::waitForOne() {
  while (flushing_ == 0) {
    usleep(100);
  }
}

void SlowFlush::flush() {
  ++flushing_;
  if (microseconds_ > 0) {
    usleep(static_cast<useconds_t>(microseconds_));
  }
  while (microseconds_ == kHeld) {
    usleep(100);
  }
  --flushing_;
}

extern "C" int fsync(int fd) {
  SlowFlush::flush();
  return static_cast<int>(syscall(SYS_fsync, fd));
}

// The C library's own pthread_cond_timedwait. glibc has two, of which dlsym finds the outdated one,
// but also a function that does the same; other C libraries have no such function.
static int waitUntil(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* end) {
#ifdef __GLIBC__
  return pthread_cond_clockwait(condition, mutex, CLOCK_MONOTONIC, end);
#else
  static auto* const wait = reinterpret_cast<decltype(&pthread_cond_timedwait)>(
      dlsym(RTLD_NEXT, "pthread_cond_timedwait"));
  return wait(condition, mutex, end);
#endif
}

extern "C" int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                      const timespec* end) {
  ++EndlessNaps::asleep;
  const int result =
      EndlessNaps::areOn() ? pthread_cond_wait(condition, mutex) : waitUntil(condition, mutex, end);
  --EndlessNaps::asleep;
  return result;
}
