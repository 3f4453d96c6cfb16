// Keeps pthread_cancel away from work that must not be cut off halfway.
#ifndef HEARTH_BASE_NO_CANCELLATION_H
#define HEARTH_BASE_NO_CANCELLATION_H

#include <pthread.h>

namespace hearth {

// Holds back the cancellation of the calling thread for as long as it lives. Writing and closing a
// file, or waiting on a condition, are cancellation points: a thread cancelled there would unwind
// through destructors that promise not to throw, and keep locks that nobody gives back. A request
// to cancel stays pending and takes effect at the caller's next cancellation point. Guards nest.
class NoCancellation {
 public:
  NoCancellation() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &earlier_); }
  ~NoCancellation() { pthread_setcancelstate(earlier_, nullptr); }
  NoCancellation(const NoCancellation&) = delete;
  NoCancellation& operator=(const NoCancellation&) = delete;

 private:
  int earlier_ = PTHREAD_CANCEL_ENABLE;
};

}  // namespace hearth

#endif
