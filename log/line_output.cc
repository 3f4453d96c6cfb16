// Writes a line under Logger::lock. The thread that holds the lock for a line leaves its id in
// lockOwner: if it faults in the middle of the line, the signal handler logs on the same thread,
// and can tell from lockOwner that waiting would be for ever. A dying process does not wait long
// for other threads either.
#include "log/line_output.h"

#include <fcntl.h>
#include <pthread.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>

#include "base/unique_fd.h"
#include "base/write_all.h"
#include "hearth/be_config.h"
#include "log/library_log.h"

namespace hearth {
namespace {

std::atomic<pthread_t> lockOwner{};
std::atomic<bool> processIsDying{false};

bool tryLockForHalfASecond() {
  const timespec tenMilliseconds{0, 10'000'000};
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (pthread_mutex_trylock(&Logger::lock) == 0) {
      return true;
    }
    nanosleep(&tenMilliseconds, nullptr);
  }
  return false;
}

// Holds Logger::lock for the time of one line, unless this thread holds it for a line already or a
// dying process waits for it in vain.
class LineLock {
 public:
  LineLock() : isHeld_(acquire()) {
    if (isHeld_) {
      lockOwner = pthread_self();
    }
  }
  ~LineLock() {
    if (isHeld_) {
      lockOwner = pthread_t{};
      pthread_mutex_unlock(&Logger::lock);
    }
  }
  LineLock(const LineLock&) = delete;
  LineLock& operator=(const LineLock&) = delete;

 private:
  static bool acquire() {
    if (lockOwner == pthread_self()) {
      return false;
    }
    if (processIsDying) {
      return tryLockForHalfASecond();
    }
    pthread_mutex_lock(&Logger::lock);
    return true;
  }

  const bool isHeld_;
};

// Standard output for the time of one line. Writes through stdio; if another thread of a dying
// process keeps stdio's lock, writes past it to the descriptor.
class Console {
 public:
  Console() : isStdio_(acquire()) {}
  ~Console() {
    if (isStdio_) {
      funlockfile(stdout);
    }
  }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  void write(const char* data, std::size_t size) {
    if (isStdio_) {
      fwrite(data, 1, size, stdout);
    } else {
      writeAll(STDOUT_FILENO, data, size);
    }
  }
  void write(const char* text) { write(text, strlen(text)); }

 private:
  static bool acquire() {
    if (processIsDying) {
      return ftrylockfile(stdout) == 0;
    }
    flockfile(stdout);
    return true;
  }

  const bool isStdio_;
};

// A log file that is a terminal may need a moment; one that is a pipe, read too slowly, loses
// lines.
constexpr int kFilePatienceMilliseconds = 100;

// False when the file cannot be opened, which a pipe that nobody reads cannot. What the device does
// not take is lost.
bool appendToFile(const char* path, const LogLine& line) {
  const UniqueFd file(
      open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
  if (!file) {
    return false;
  }
  writeAll(file.get(), line.data(), line.size(), kFilePatienceMilliseconds);
  return true;
}

}  // namespace

void writeLine(const LogLine& line) {
  const LineLock lock;
  const char* const path = BEConfig::LOG_FILE.c_str();
  const bool isUnopened = relaxedLoad(Logger::enableFileLog) != 0 && !appendToFile(path, line);
  Console console;
  if (isUnopened) {
    console.write("fail to open file ");
    console.write(path);
    console.write("\n");
  }
  console.write(line.data(), line.size());
}

void stopWaitingForLocks() {
  processIsDying = true;
}

}  // namespace hearth
