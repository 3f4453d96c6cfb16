// Failing file calls, from outside the library: a shared library that stands between it and the C
// library, and counts the calls on files that pass.
#ifndef HEARTH_TESTS_FAULTS_FILE_FAULTS_H
#define HEARTH_TESTS_FAULTS_FILE_FAULTS_H

struct FileFault {
  static constexpr int kHalf = -1;  // no failure: a read or a write moves half of what it could
  static constexpr int kKill = -2;  // the process dies at the call, in the middle of a write

  const char* name;
  int error;   // the errno that the call fails with, or one of the above
  bool lasts;  // all later calls fail too
};

// Starts the counting. The n-th call from now on meets the fault; none does at 0.
void failFileCall(int nth, const FileFault& itsFault);

// An open, a write, a flush, a rename or a removal of a file, once it has been made.
struct FileCall {
  const char* name;  // as in openat, write, fsync, renameat, unlinkat
  int fd;            // the descriptor that it gets; of openat, the one that it gives
  int flags;         // of openat and unlinkat
  bool failed;
};

// Calls the watcher after each of these calls while calls are counted. The watcher's own calls are
// not counted.
void watchFileCalls(void (*watcher)(const FileCall& call));

// Ends the counting. Answers the number of calls since its start.
int countedFileCalls();

#endif
