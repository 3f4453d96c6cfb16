// The walk along links. Each round opens the folder part of a path, relative to the folder of the
// round before, and looks at the name part; if that is a symbolic link, its text is the path of the
// next round. The walk ends at a name that is no link, or that does not exist yet.
#include "files/place.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "base/status.h"

namespace hearth {
namespace {

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

}  // namespace

// The system is asked first where a link leads: it may forbid to follow the link, and some links in
// /proc lead where their text does not. Only a link to a regular file, or to nothing yet, is then
// walked by its text.
bool Place::find(const char* path) {
  if (!enter(path) || !look()) {
    return false;
  }
  struct stat end {};
  if (isLink() && stat(path, &end) != 0) {
    if (errno != ENOENT) {
      return false;
    }
  } else if (isLink() && !S_ISREG(end.st_mode)) {
    status_ = end;
    return true;
  }
  for (int links = 0; isLink(); ++links) {
    if (links == kMaxLinks) {
      return failWith(ELOOP);
    }
    if (!follow() || !look()) {
      return false;
    }
  }
  return true;
}

// A relative folder part counts from the folder entered before, as the text of a link does.
bool Place::enter(const char* path) {
  const char* const slash = strrchr(path, '/');
  const char* const name = slash == nullptr ? path : slash + 1;
  const std::size_t folderSize = static_cast<std::size_t>(name - path);
  const std::size_t nameSize = strlen(name);
  char folder[PATH_MAX] = ".";
  if (folderSize + nameSize >= sizeof(folder) || nameSize >= sizeof(name_)) {
    return failWith(ENAMETOOLONG);
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

// Looks at what has the name. A path that ends in a slash has no name part: it can only mean a
// folder.
bool Place::look() {
  if (name_[0] == '\0') {
    return failWith(EISDIR);
  }
  isNew_ = fstatat(folder(), name_, &status_, AT_SYMLINK_NOFOLLOW) != 0;
  return !isNew_ || errno == ENOENT;
}

// Goes one link further. Requires isLink().
bool Place::follow() {
  char text[PATH_MAX];
  const ssize_t size = readlinkat(folder(), name_, text, sizeof(text) - 1);
  if (size < 0) {
    return false;
  }
  text[size] = '\0';
  return enter(text);
}

}  // namespace hearth
