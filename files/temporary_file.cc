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

namespace hearth {
namespace {

constexpr char kPrefix[] = ".hearth-";
constexpr char kDigits[] = "0123456789abcdef";
constexpr char kSuffix[] = ".tmp";
constexpr std::size_t kPrefixSize = sizeof(kPrefix) - 1;
constexpr std::size_t kDigitCount = 16;

// Nobody can guess it; only before the system has gathered any randomness does the clock serve,
// which O_EXCL makes a nuisance at worst.
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

bool removeIfStray(int folder, const char* name) {
  const UniqueFd file(
      openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status;
  return file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
         flock(file.get(), LOCK_EX | LOCK_NB) == 0 && unlinkat(folder, name, 0) == 0;
}

// The folders that were free of strays when last looked at, and the time of their last change then:
// one that has not changed since needs no search. Forgetting a folder costs a search, no more.
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
    Folder* place = find(now);
    if (place == nullptr) {
      place = &known_[next_];
      next_ = (next_ + 1) % kRemembered;
    }
    *place = {now.st_dev, now.st_ino, now.st_mtim};
  }

 private:
  struct Folder {
    dev_t device;
    ino_t inode;
    timespec changed;
  };
  static constexpr unsigned kRemembered = 32;

  Folder* find(const struct stat& status) {
    for (Folder& known : known_) {
      if (known.device == status.st_dev && known.inode == status.st_ino) {
        return &known;
      }
    }
    return nullptr;
  }

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  Folder known_[kRemembered] = {};
  unsigned next_ = 0;
};

SearchedFolders searchedFolders;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

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
  errno = EEXIST;
  return false;
}

TemporaryFile::Outcome TemporaryFile::tryToMake(mode_t mode) {
  snprintf(name_, sizeof(name_), "%s%016" PRIx64 "%s", kPrefix, randomNumber(), kSuffix);
  file_ =
      UniqueFd(openat(folder_, name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file_) {  // a network's file system may answer EINTR when it has made the file
    return errno == EEXIST || errno == EINTR ? Outcome::kTaken : Outcome::kFailed;
  }
  // A file system without locks has no searches that remove anything either.
  if (flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    return Outcome::kTaken;
  }
  if (fstat(file_.get(), &status_) != 0) {
    return Outcome::kFailed;
  }
  // Between its making and its locking, another's search may have found it and removed it.
  return status_.st_nlink > 0 ? Outcome::kMade : Outcome::kTaken;
}

bool TemporaryFile::become(const char* target) {
  while (renameat(folder_, name_, folder_, target) != 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  name_[0] = '\0';
  return true;
}

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
    errno = 0;  // which the last entry leaves alone and a failure sets
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
