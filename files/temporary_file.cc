// Making, renaming and removing temporaries. Making one takes two steps, create and lock, and a
// search for strays may come in between, find it unlocked and remove it. So a temporary counts as
// made only if it still has a name once it is locked; else the next random name is tried.
#include "files/temporary_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <time.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/mutex_lock.h"
#include "base/status.h"

namespace hearth {
namespace {

constexpr char kPrefix[] = ".hearth-";
constexpr char kDigits[] = "0123456789abcdef";
constexpr char kSuffix[] = ".tmp";
constexpr std::size_t kPrefixSize = sizeof(kPrefix) - 1;
constexpr std::size_t kDigitCount = 16;

// A number that nobody can guess. Before the system has gathered any randomness, the clock has to
// serve; a name that is guessed costs another attempt at worst, because of O_EXCL.
uint64_t randomNumber() {
  uint64_t number = 0;
  if (getrandom(&number, sizeof(number), GRND_NONBLOCK) != sizeof(number)) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    number = static_cast<uint64_t>(now.tv_nsec) * 0x9e3779b97f4a7c15U +
             static_cast<uint64_t>(getpid()) + static_cast<uint64_t>(now.tv_sec);
  }
  return number;
}

bool isTemporaryName(const char* name) {
  return strncmp(name, kPrefix, kPrefixSize) == 0 &&
         strspn(name + kPrefixSize, kDigits) == kDigitCount &&
         strcmp(name + kPrefixSize + kDigitCount, kSuffix) == 0;
}

// True when the name was a stray and is gone. Only a regular file whose lock nobody holds is one.
bool removeIfStray(int folder, const char* name) {
  const UniqueFd file(
      openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status;
  return file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
         flock(file.get(), LOCK_EX | LOCK_NB) == 0 && unlinkat(folder, name, 0) == 0;
}

// Remembers folders that were free of strays when last looked at, with the time of their last
// change then: one that has not changed since needs no search. The oldest is forgotten when there
// are too many, which costs one search more.
class SearchedFolders {
 public:
  bool isUnchanged(int folder) {
    struct stat now;
    if (fstat(folder, &now) != 0) {
      return false;
    }
    const MutexLock guard(mutex_);
    const Folder* const known = find(now);
    return known != nullptr && known->changed.tv_sec == now.st_mtim.tv_sec &&
           known->changed.tv_nsec == now.st_mtim.tv_nsec;
  }

  void remember(int folder) {
    struct stat now;
    if (fstat(folder, &now) != 0) {
      return;
    }
    const MutexLock guard(mutex_);
    Folder* known = find(now);
    if (known == nullptr) {
      known = &known_[next_];
      next_ = (next_ + 1) % kRemembered;
    }
    *known = {now.st_dev, now.st_ino, now.st_mtim};
  }

 private:
  struct Folder {
    dev_t device;
    ino_t inode;
    timespec changed;
  };
  static constexpr unsigned kRemembered = 32;

  // The entry of a folder; null when it is not remembered. A folder is told by device and inode,
  // since its name may change hands.
  Folder* find(const struct stat& status) {
    for (Folder& known : known_) {
      if (known.device == status.st_dev && known.inode == status.st_ino) {
        return &known;
      }
    }
    return nullptr;
  }

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;  // guards the members below
  Folder known_[kRemembered] = {};
  unsigned next_ = 0;
};

SearchedFolders searchedFolders;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

// Removes the file while it still has its temporary name, and keeps the errno of the failure that
// led here.
TemporaryFile::~TemporaryFile() {
  if (file_ && name_[0] != '\0') {
    const int kept = errno;
    unlinkat(folder_, name_, 0);
    errno = kept;
  }
}

bool TemporaryFile::make(mode_t mode) {
  for (int attempt = 0; attempt < 16; ++attempt) {
    const Outcome outcome = tryToMake(mode);
    if (outcome != Outcome::kTaken) {
      return outcome == Outcome::kMade;
    }
  }
  return failWith(EEXIST);
}

TemporaryFile::Outcome TemporaryFile::tryToMake(mode_t mode) {
  snprintf(name_, sizeof(name_), "%s%016" PRIx64 "%s", kPrefix, randomNumber(), kSuffix);
  file_ =
      UniqueFd(openat(folder_, name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file_) {  // a network's file system may answer EINTR when it has made the file
    return errno == EEXIST || errno == EINTR ? Outcome::kTaken : Outcome::kFailed;
  }
  // Any other failure means a file system without locks. A search removes nothing there either.
  if (flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    return Outcome::kTaken;
  }
  if (fstat(file_.get(), &status_) != 0) {
    return Outcome::kFailed;
  }
  // No name left: a search has removed it between the two steps.
  return status_.st_nlink > 0 ? Outcome::kMade : Outcome::kTaken;
}

bool TemporaryFile::become(const char* name) {
  while (renameat(folder_, name_, folder_, name) != 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  name_[0] = '\0';  // so that the destructor removes nothing
  return true;
}

// The folder is opened anew for the listing, because fdopendir() takes over the descriptor it
// lists.
bool removeStraysIn(int folder) {
  const int listed = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseFolder> entries(listed < 0 ? nullptr : fdopendir(listed));
  if (entries == nullptr) {
    if (listed >= 0) {
      close(listed);
    }
    return false;
  }
  const auto next = [&entries] {
    errno = 0;  // readdir answers null for the end and for a failure; only a failure sets errno
    return readdir(entries.get());
  };
  bool areAllGone = true;
  while (const dirent* const entry = next()) {
    if (isTemporaryName(entry->d_name) && !removeIfStray(folder, entry->d_name)) {
      areAllGone = false;
    }
  }
  return areAllGone && errno == 0;
}

bool removeStraysIfChanged(int folder) {
  return searchedFolders.isUnchanged(folder) || removeStraysIn(folder);
}

void expectNoStrays(int folder) {
  searchedFolders.remember(folder);
}

}  // namespace hearth
