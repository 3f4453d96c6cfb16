// The fatal-signal handler: a small world of its own, in which anything it calls may be what is
// broken. Four steps are each begun once at most: capture the stack, log the signal, write the
// frames, exit. A fault inside a step re-enters the handler, which goes on with the next one. A
// second thread that faults meanwhile waits for the end of the process. An alarm ends a process
// that gets stuck on the way (a fault inside malloc, an exit handler that waits for a lock).
#include "log/crash_handler.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "base/no_cancellation.h"
#include "hearth/logger.h"
#include "log/backtrace.h"
#include "log/line_output.h"

namespace hearth {
namespace {

constexpr int kMaxFrames = 10;
constexpr unsigned kPatienceSeconds = 30;

// Only the handling thread writes these. They outlive a fault, so that the handler finds the frames
// and the next step again.
void* frames[kMaxFrames];
int frameCount = 0;
int nextStep = 0;

std::atomic<pthread_t> handlingThread{};

// The action of the alarm.
extern "C" void endStuckProcess(int) {
  _exit(EXIT_FAILURE);
}

// Makes the calling thread the handling one unless there is one already. True for the handling
// thread, however often it faults.
bool claimHandling() {
  pthread_t first{};
  return handlingThread.compare_exchange_strong(first, pthread_self()) ||
         pthread_equal(first, pthread_self()) != 0;
}

// Keeps a second thread that faults out of the way; the handling thread ends the process.
[[noreturn]] void waitForTheEnd() {
  for (unsigned left = kPatienceSeconds; left > 0;) {
    left = sleep(left);
  }
  _exit(EXIT_FAILURE);
}

// Unblocks the signal and the alarm's, so that a fault inside the handler reaches the handler again
// and the alarm gets through. Sets the alarm when the thread comes here first.
void prepareForFaultsInside(int signalNumber) {
  stopWaitingForLocks();
  if (nextStep == 0) {
    signal(SIGALRM, endStuckProcess);
    alarm(kPatienceSeconds);
  }
  sigset_t wanted;
  sigemptyset(&wanted);
  sigaddset(&wanted, signalNumber);
  sigaddset(&wanted, SIGALRM);
  pthread_sigmask(SIG_UNBLOCK, &wanted, nullptr);
}

}  // namespace

void prepareBacktrace() {
  void* frame = nullptr;
  backtrace(&frame, 1);
}

}  // namespace hearth

// The stack is captured in the handler itself: a function of its own would cost one of its frames.
void be_sig_handler(int signalNumber) {
  const hearth::NoCancellation guard;
  if (!hearth::claimHandling()) {
    hearth::waitForTheEnd();
  }
  hearth::prepareForFaultsInside(signalNumber);
  for (;;) {
    switch (hearth::nextStep++) {
      case 0:
        hearth::frameCount = backtrace(hearth::frames, hearth::kMaxFrames);
        break;
      case 1:
        Logger::print(LOG_ERROR, LOG_GROUP_UTIL, "Error: signal %d:\n", signalNumber);
        break;
      case 2:
        backtrace_symbols_fd(hearth::frames, hearth::frameCount, STDERR_FILENO);
        break;
      case 3:
        exit(EXIT_FAILURE);
      case 4:
        fflush(nullptr);
        break;
      default:
        _exit(EXIT_FAILURE);
    }
  }
}
