// Calls of the C library that a test can hold up, in any number of threads: the test program
// defines them itself, and its definitions come before the library's. (tests/faults/file_faults.h
// makes calls fail, and counts them, in programs with one thread.)
#ifndef HEARTH_TESTS_LOCALDB_HELD_CALLS_H
#define HEARTH_TESTS_LOCALDB_HELD_CALLS_H

#include <atomic>

// While it lives, every fsync takes at least this long; at kHeld it takes until the object dies.
class SlowFlush {
 public:
  static constexpr int kHeld = -1;
  explicit SlowFlush(int microseconds) { microseconds_ = microseconds; }
  ~SlowFlush() { microseconds_ = 0; }
  SlowFlush(const SlowFlush&) = delete;
  SlowFlush& operator=(const SlowFlush&) = delete;

  static void waitForOne();  // returns when an fsync is being held up
  static void flush();

 private:
  static std::atomic<int> microseconds_;
  static std::atomic<int> flushing_;
};

// While it lives, waits on a condition have no time-out: a thread that is not woken sleeps for
// ever.
class EndlessNaps {
 public:
  EndlessNaps() { areOn_ = true; }
  ~EndlessNaps() { areOn_ = false; }
  EndlessNaps(const EndlessNaps&) = delete;
  EndlessNaps& operator=(const EndlessNaps&) = delete;
  static bool areOn() { return areOn_; }

  static std::atomic<int> asleep;  // threads in such a wait, with its time-out or without

 private:
  static std::atomic<bool> areOn_;
};

#endif
