// Calls of the C library that a test can slow down: the test program's own definitions stand before
// the library's.
#ifndef HEARTH_TESTS_LOCALDB_HELD_CALLS_H
#define HEARTH_TESTS_LOCALDB_HELD_CALLS_H

#include <atomic>

// While it lives every fsync takes at least this long; for ever at kHeld, until it dies.
class SlowFlush {
 public:
  static constexpr int kHeld = -1;
  explicit SlowFlush(int microseconds) { microseconds_ = microseconds; }
  ~SlowFlush() { microseconds_ = 0; }
  SlowFlush(const SlowFlush&) = delete;
  SlowFlush& operator=(const SlowFlush&) = delete;

  static void waitForOne();  // that is being held
  static void flush();

 private:
  static std::atomic<int> microseconds_;
  static std::atomic<int> flushing_;
};

// While it lives a wait on a condition with a time-out has none: who is not woken sleeps for ever.
class EndlessNaps {
 public:
  EndlessNaps() { areOn_ = true; }
  ~EndlessNaps() { areOn_ = false; }
  EndlessNaps(const EndlessNaps&) = delete;
  EndlessNaps& operator=(const EndlessNaps&) = delete;
  static bool areOn() { return areOn_; }

  static std::atomic<int> asleep;  // in such a wait, with or without a time-out

 private:
  static std::atomic<bool> areOn_;
};

#endif
