// Replacing a file in one step: find the folder and the name that the path stands for, write the
// new contents to a temporary file in that folder, give it the old file's owner and mode, flush it,
// rename it over the old file, flush the folder.
#include "files/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "base/no_cancellation.h"
#include "base/unique_fd.h"
#include "base/write_all.h"
#include "files/temporary_file.h"

namespace hearth {
namespace {

bool fail(int error) {
  errno = error;
  return false;
}

// A folder that may be entered but not listed can still be written to; it only cannot be flushed.
UniqueFd openFolder(int from, const char* path) {
  int fd = -1;
  do {
    fd = openat(from, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  } while (fd < 0 && errno == EINTR);
  if (fd >= 0 || errno != EACCES) {
    return UniqueFd(fd);
  }
  return UniqueFd(openat(from, path, O_PATH | O_DIRECTORY | O_CLOEXEC));
}

// A folder and a name in it: what a path stands for once the symbolic links at its end are
// followed.
class Place {
 public:
  // False, with errno, when the path leads to no folder or its links go in circles.
  [[nodiscard]] bool find(const char* path);

  // The folder alone; whatever has the name.
  [[nodiscard]] bool enter(const char* path);

  int folder() const { return folder_.get(); }
  const char* name() const { return name_; }
  bool isNew() const { return isNew_; }
  // What has the name now, unless it is new.
  const struct stat& status() const { return status_; }

 private:
  static constexpr int kMaxLinks = 40;

  [[nodiscard]] bool look();
  [[nodiscard]] bool follow();
  bool isLink() const { return !isNew_ && S_ISLNK(status_.st_mode); }

  UniqueFd folder_{};
  char name_[NAME_MAX + 1] = "";
  bool isNew_ = false;
  struct stat status_ {};
};

// What a link leads to is the system's to say first: it may forbid to follow the link, and some
// links in /proc lead where their text does not.
bool Place::find(const char* path) {
  if (!enter(path) || !look()) {
    return false;
  }
  struct stat target {};
  if (isLink() && stat(path, &target) != 0) {
    if (errno != ENOENT) {
      return false;
    }
  } else if (isLink() && !S_ISREG(target.st_mode)) {
    status_ = target;
    return true;
  }
  for (int links = 0; isLink(); ++links) {
    if (links == kMaxLinks) {
      return fail(ELOOP);
    }
    if (!follow() || !look()) {
      return false;
    }
  }
  return true;
}

// Opens the folder part of the path, as seen from the folder so far, and keeps the name part.
bool Place::enter(const char* path) {
  const char* const slash = strrchr(path, '/');
  const char* const name = slash == nullptr ? path : slash + 1;
  const std::size_t folderSize = static_cast<std::size_t>(name - path);
  const std::size_t nameSize = strlen(name);
  char folder[PATH_MAX] = ".";
  if (folderSize + nameSize >= sizeof(folder) || nameSize >= sizeof(name_)) {
    return fail(ENAMETOOLONG);
  }
  if (folderSize > 0) {
    memcpy(folder, path, folderSize);
    folder[folderSize] = '\0';
  }
  UniqueFd entered = openFolder(folder_ ? folder_.get() : AT_FDCWD, folder);
  if (!entered) {
    return false;
  }
  folder_ = std::move(entered);
  memcpy(name_, name, nameSize + 1);
  return true;
}

// A path that ends in a slash names a folder, or nothing.
bool Place::look() {
  if (name_[0] == '\0') {
    return fail(EISDIR);
  }
  isNew_ = fstatat(folder(), name_, &status_, AT_SYMLINK_NOFOLLOW) != 0;
  return !isNew_ || errno == ENOENT;
}

bool Place::follow() {
  char target[PATH_MAX];
  const ssize_t size = readlinkat(folder(), name_, target, sizeof(target) - 1);
  if (size < 0) {
    return false;
  }
  target[size] = '\0';
  return enter(target);
}

bool flush(int fd) {
  while (fsync(fd) != 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

// The mode that gives nobody more than the old one did, now that some who were the file's owner or
// its group are merely others.
mode_t narrowed(mode_t mode, bool ownerIsKept, bool groupIsKept) {
  const mode_t owner = mode >> 6 & 7U;
  mode_t group = mode >> 3 & 7U;
  mode_t others = mode & 7U;
  if (!ownerIsKept) {
    group &= owner;
    others &= owner;
  }
  if (!groupIsKept) {
    group &= others;
    others = group;
  }
  return owner << 6 | group << 3 | others;
}

// Gives the temporary the owner and the mode of the file that it replaces.
bool inherit(const TemporaryFile& temporary, const struct stat& old) {
  const int fd = temporary.fd();
  const struct stat& made = temporary.status();
  bool ownerIsKept = made.st_uid == old.st_uid;
  bool groupIsKept = made.st_gid == old.st_gid;
  if (!ownerIsKept && fchown(fd, old.st_uid, old.st_gid) == 0) {
    ownerIsKept = groupIsKept = true;
  }
  if (!groupIsKept) {
    groupIsKept = fchown(fd, static_cast<uid_t>(-1), old.st_gid) == 0;
  }
  const mode_t mode = old.st_mode & 07777U;
  return fchmod(fd, ownerIsKept && groupIsKept ? mode : narrowed(mode, ownerIsKept, groupIsKept)) ==
         0;
}

bool replaceRegular(const Place& place, const char* data, std::size_t size, Durability durability) {
  if (!place.isNew() && faccessat(place.folder(), place.name(), W_OK, AT_EACCESS) != 0) {
    return false;
  }
  const bool isTidy = removeStraysIfChanged(place.folder());
  const bool isFlushed = durability == Durability::kFlushed;
  TemporaryFile temporary(place.folder());
  const bool isComplete = temporary.make(place.isNew() ? 0644 : 0600) &&
                          (place.isNew() || inherit(temporary, place.status())) &&
                          writeAll(temporary.fd(), data, size) &&
                          (!isFlushed || flush(temporary.fd()));
  if (!isComplete || !temporary.become(place.name())) {
    return false;
  }
  if (isTidy) {
    expectNoStrays(place.folder());
  }
  if (isFlushed) {
    flush(place.folder());
  }
  return true;
}

// A device or a pipe takes the data as it comes.
bool writeStraight(const char* path, const char* data, std::size_t size) {
  const UniqueFd file(open(path, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  return file && writeAll(file.get(), data, size);
}

}  // namespace

bool replaceFile(const char* path, const char* data, std::size_t size, Durability durability) {
  const NoCancellation guard;
  Place place;
  if (path == nullptr) {
    return fail(EFAULT);
  }
  if (!place.find(path)) {
    return false;
  }
  if (place.isNew() || S_ISREG(place.status().st_mode)) {
    return replaceRegular(place, data, size, durability);
  }
  return S_ISDIR(place.status().st_mode) ? fail(EISDIR) : writeStraight(path, data, size);
}

void removeStrayTemporaries(const char* path) {
  const NoCancellation guard;
  Place place;
  if (path != nullptr && place.enter(path)) {
    removeStraysIn(place.folder());
  }
}

}  // namespace hearth
