// flock has no wait with a limit, so the lock is tried every 50 milliseconds, for five seconds.
// Closing the descriptor gives it back, and so does the end of the process, however it comes.
#include "tools/document/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>

#include "tools/document/replacement.h"
#include "tools/document/transaction.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

UniqueFd openFolderOf(const std::string& file) {
  const std::size_t slash = file.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : file.substr(0, slash + 1);
  return UniqueFd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// A save follows symbolic links, so two commands that reach one file by different links must meet
// at the same lock: at that of the folder where the file itself lies.
UniqueFd openTargetFolderOf(const std::string& file) {
  char resolved[PATH_MAX];
  return realpath(file.c_str(), resolved) != nullptr ? openFolderOf(resolved) : UniqueFd();
}

bool areSame(const UniqueFd& one, const UniqueFd& other) {
  struct stat left {};
  struct stat right {};
  return fstat(one.get(), &left) == 0 && fstat(other.get(), &right) == 0 &&
         left.st_ino == right.st_ino && left.st_dev == right.st_dev;
}

// Any other error than "held by somebody else" ends the wait without a lock.
void waitForLock(const UniqueFd& folder, const std::string& file) {
  constexpr timespec kPause = {0, 50'000'000};
  constexpr int kTries = 100;
  for (int i = 0; flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i) {
    if (i == kTries) {
      throw Failure(Exit::kConflict, inQuotes(file) +
                                         ": another hearth command, or the backend, is changing "
                                         "this folder; try again");
    }
    nanosleep(&kPause, nullptr);
  }
}

}  // namespace

// Whoever dies while changing several areas leaves word of it before the lock on any of them is
// free again, so the question is asked with the lock held.
FolderLock::FolderLock(const std::string& file) {
  if (Transaction* const transaction = Transaction::current(); transaction != nullptr) {
    transaction->lock(file);
    return;
  }
  for (take(file); hasInterrupted(); take(file)) {
    folder_ = UniqueFd();
    target_ = UniqueFd();
    finishInterrupted(false);
  }
}

FolderLock FolderLock::alone(const std::string& file) {
  FolderLock lock;
  lock.take(file);
  return lock;
}

void FolderLock::take(const std::string& file) {
  folder_ = openFolderOf(file);
  waitForLock(folder_, file);
  UniqueFd target = openTargetFolderOf(file);
  if (target && !areSame(folder_, target)) {
    target_ = std::move(target);
    waitForLock(target_, file);
  }
}

}  // namespace hearth::tool
