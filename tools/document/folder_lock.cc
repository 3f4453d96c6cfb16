// flock has no wait with a limit, so the lock is tried every 50 milliseconds, for five seconds.
// Closing the descriptor gives it back, and so does the end of the process, however it comes.
#include "tools/document/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>

#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// The folder of the file that a save would replace. A save follows symbolic links, so two commands
// that reach one file by different links must meet at the same lock.
std::string folderOf(const std::string& file) {
  char resolved[PATH_MAX];
  const std::string whole = realpath(file.c_str(), resolved) != nullptr ? resolved : file;
  const std::size_t slash = whole.rfind('/');
  return slash == std::string::npos ? "." : whole.substr(0, slash + 1);
}

}  // namespace

FolderLock::FolderLock(const std::string& file)
    : folder_(open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr timespec kPause = {0, 50'000'000};
  constexpr int kTries = 100;
  // Any other error than "held by somebody else" ends the loop without a lock.
  for (int i = 0; flock(folder_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i) {
    if (i == kTries) {
      throw Failure(Exit::kConflict,
                    inQuotes(file) + ": another hearth command is editing this folder; try again");
    }
    nanosleep(&kPause, nullptr);
  }
}

}  // namespace hearth::tool
