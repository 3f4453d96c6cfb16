// Processes that die: each case faults in a child, which must end with status 1, its frames on
// standard error, its buffered output flushed, and the signal's line where the filters allow it.
#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "hearth/be_config.h"
#include "hearth/logger.h"
#include "tests/support/scratch.h"

// ThreadSanitizer would report what this handler is there for: exit() out of a signal handler.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_options() { return "report_signal_unsafe=0"; }

namespace hearth {
namespace {

constexpr char kLine[] = "UTIL          |ERROR: Error: signal 11:\n";

// Memory that nobody may touch.
char* forbidden() {
  return static_cast<char*>(mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
}

void fault() {
  *const_cast<volatile char*>(forbidden()) = 1;
}

void pauseForEver() {
  for (;;) {
    pause();
  }
}

// Runs the work in another thread, and goes on once that thread has done it.
void elsewhere(const std::function<void()>& work,
               const std::function<void()>& later = pauseForEver) {
  static std::atomic<bool> isDone{false};
  std::thread([work, later] {
    work();
    isDone = true;
    later();
  }).detach();
  while (!isDone) {
    std::this_thread::yield();
  }
}

void faultElsewhere() {
  elsewhere(fault);
}

void faultInThreads() {
  for (int i = 0; i < 4; ++i) {
    std::thread(fault).detach();
  }
  pauseForEver();
}

void faultInPrint() {
  Logger::print(LOG_INFO, LOG_GROUP_UTIL, "%s\n", forbidden());
}

void faultWithLock() {
  pthread_mutex_lock(&Logger::lock);
  fault();
}

void faultWithLockElsewhere() {
  elsewhere([] { pthread_mutex_lock(&Logger::lock); });
  fault();
}

void faultWithStdoutElsewhere() {
  elsewhere([] { flockfile(stdout); },
            [] {
              sleep(1);
              funlockfile(stdout);
              pauseForEver();
            });
  fault();
}

void faultAtExit() {
  atexit(fault);
  fault();
}

void logAtExit() {
  atexit([] { Logger::print(LOG_INFO, LOG_GROUP_WSL, "bye\n"); });
  faultWithLockElsewhere();
}

void getStuckAtExit() {
  atexit([] {
    fflush(stdout);
    alarm(1);  // sooner than the handler's own alarm
    pauseForEver();
  });
  fault();
}

void faultWithoutErrors() {
  BEConfig::LOG_ERROR_ENABLE = 0;
  fault();
}

void faultWithoutGroup() {
  Logger::setGroup(LOG_GROUP_UTIL, false);
  fault();
}

using SignalHandlerTest = Scratch;

TEST_F(SignalHandlerTest, EveryFaultIsReportedAndEndsTheProcess) {
  const struct {
    const char* name;
    void (*work)();
    const char* file;
    const char* out;
  } kCases[] = {
      {"plain", fault, kLine, kLine},
      {"second thread", faultElsewhere, kLine, kLine},
      {"four threads at once", faultInThreads, kLine, kLine},
      {"inside print", faultInPrint, kLine, kLine},
      {"own lock", faultWithLock, kLine, kLine},
      {"lock held elsewhere", faultWithLockElsewhere, kLine, kLine},
      {"standard output held elsewhere", faultWithStdoutElsewhere, kLine, kLine},
      {"again at exit", faultAtExit, kLine, kLine},
      {"log line at exit", logAtExit, nullptr, nullptr},
      {"stuck at exit", getStuckAtExit, kLine, kLine},
      {"errors off", faultWithoutErrors, "", ""},
      {"group off", faultWithoutGroup, "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    std::filesystem::remove("BE.log");
    const time_t start = time(nullptr);
    const Ended ended = inChild([&c] {
      Logger::init();
      printf("buffered\n");
      c.work();
    });
    const std::string bye = std::string(kLine) + "WSL           | INFO: bye\n";
    const std::string out = c.out == nullptr ? bye : c.out;
    EXPECT_EQ(1, ended.status);
    EXPECT_EQ(c.file == nullptr ? bye : c.file, textOf("BE.log"));
    EXPECT_TRUE(ended.out == "buffered\n" + out || ended.out == out + "buffered\n") << ended.out;
    const auto frames = std::count(ended.err.begin(), ended.err.end(), '\n');
    EXPECT_TRUE(frames >= 2 && frames <= 10) << ended.err;
    EXPECT_LT(time(nullptr) - start, 10);
  }
}

TEST_F(SignalHandlerTest, MayBeInstalledForFurtherSignals) {
  const Ended ended = inChild([] {
    Logger::init();
    signal(SIGABRT, be_sig_handler);
    abort();
  });
  EXPECT_EQ(1, ended.status);
  EXPECT_EQ("UTIL          |ERROR: Error: signal 6:\n", ended.out);
}

}  // namespace
}  // namespace hearth
