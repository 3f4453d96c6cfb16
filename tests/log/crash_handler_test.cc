// Processes that die: each case faults in a child, which must end with status 1, its frames on
// standard error, its buffered output flushed, and the signal's line where the filters allow it.
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <thread>
#include <tuple>

#include "hearth/be_config.h"
#include "hearth/logger.h"
#include "tests/support/scratch.h"

// ThreadSanitizer would report what this handler is there for: exit() out of a signal handler.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_options() {
  return "report_signal_unsafe=0";
}

namespace hearth {
namespace {

constexpr int kFewestFrames = 2;
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
void elsewhere(void (*work)(), void (*later)() = pauseForEver) {
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

void faultInThreads() {
  for (int i = 0; i < 4; ++i) {
    std::thread(fault).detach();
  }
  pauseForEver();
}

void lock() {
  pthread_mutex_lock(&Logger::lock);
}

// Waits until the signal's line has gone past stdio, then unlocks standard output.
void letGoOfStdout() {
  struct stat out {};
  while (fstat(STDOUT_FILENO, &out) == 0 && out.st_size == 0) {
    std::this_thread::yield();
  }
  funlockfile(stdout);
  pauseForEver();
}

void getStuck() {
  fflush(stdout);
  const unsigned int left = alarm(1);  // sooner than the handler's own alarm
  if (left > 0 && left <= 30) {
    sleep(60);
  }
  _exit(2);
}

void getStuckWithoutAlarms() {
  sigset_t alarms;
  sigemptyset(&alarms);
  sigaddset(&alarms, SIGALRM);
  pthread_sigmask(SIG_BLOCK, &alarms, nullptr);
  atexit(getStuck);
}

using SignalHandlerTest = Scratch;

TEST_F(SignalHandlerTest, EveryFaultIsReportedAndEndsTheProcess) {
  const std::string bye = std::string(kLine) + "WSL           | INFO: bye\n";
  const std::tuple<const char*, std::string, void (*)()> rows[] = {
      {"plain", kLine, [] {}},
      {"second thread", kLine, [] { elsewhere(fault); }},
      {"four threads at once", kLine, faultInThreads},
      {"inside print", kLine, [] { Logger::print(LOG_INFO, LOG_GROUP_UTIL, "%s\n", forbidden()); }},
      {"own lock", kLine, lock},
      {"lock held elsewhere", kLine, [] { elsewhere(lock); }},
      {"stdout held elsewhere", kLine, [] { elsewhere([] { flockfile(stdout); }, letGoOfStdout); }},
      {"again at exit", kLine, [] { atexit(fault); }},
      {"line at exit", bye,
       [] { atexit([] { Logger::print(LOG_INFO, LOG_GROUP_WSL, "bye\n"); }), elsewhere(lock); }},
      {"stuck at exit", kLine, getStuckWithoutAlarms},
      {"cancelled", kLine, [] { pthread_cancel(pthread_self()); }},
      {"errors off", "", [] { BEConfig::LOG_ERROR_ENABLE = 0; }},
      {"group off", "", [] { Logger::setGroup(LOG_GROUP_UTIL, false); }},
  };
  for (const auto& [name, lines, work] : rows) {
    SCOPED_TRACE(name);
    void (*const prepare)() = work;
    std::filesystem::remove("BE.log");
    const time_t start = time(nullptr);
    const Ended ended = inChild([prepare] {
      Logger::init();
      printf("buffered\n");
      prepare();
      fault();
    });
    EXPECT_EQ(1, ended.status);
    EXPECT_EQ(lines, textOf("BE.log"));
    EXPECT_TRUE(ended.out == "buffered\n" + lines || ended.out == lines + "buffered\n")
        << ended.out;
    const auto frames = std::count(ended.err.begin(), ended.err.end(), '\n');
    EXPECT_TRUE(frames >= kFewestFrames && frames <= 10) << ended.err;
    EXPECT_LT(time(nullptr) - start, 30) << "the handler's alarm";
  }
}

// The thread that faults holds the line's lock and standard output's, which faults whenever it is
// written.
TEST_F(SignalHandlerTest, AFaultInTheMiddleOfALineIsReported) {
  const Ended ended = inChild([] {
    Logger::init();
    setvbuf(stdout, forbidden(), _IOFBF, 4096);
    Logger::print(LOG_INFO, LOG_GROUP_UTIL, "line\n");
  });
  EXPECT_EQ(1, ended.status);
  EXPECT_EQ(std::string("UTIL          | INFO: line\n") + kLine, textOf("BE.log"));
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
