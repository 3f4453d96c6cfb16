// The replacement, step by step: find the file's place, write the new contents to a temporary file
// in that folder, give it the old file's owner and mode, flush it, rename it over the old file,
// flush the folder. Up to the rename, a failure leaves the old file as it was and the temporary
// file removes itself; from the rename on, the new contents are there.
#include "files/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/no_cancellation.h"
#include "base/status.h"
#include "base/unique_fd.h"
#include "base/write_all.h"
#include "files/place.h"
#include "files/temporary_file.h"

namespace hearth {
namespace {

// Waits until the device has the file or the folder.
bool flush(int fd) {
  while (fsync(fd) != 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

// The mode for a file whose owner or group could not be kept. Who was the old file's owner, or in
// its group, may count as another user of the new one. So a class keeps only the rights that every
// class has from which its members may come.
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

// Gives the temporary file the owner and the mode of the file that it replaces, as far as this
// process may. Giving away the owner may be forbidden where giving away the group is not.
bool inherit(const TemporaryFile& temporary, const struct stat& old) {
  const int fd = temporary.fd();
  const struct stat& made = temporary.status();
  bool ownerIsKept = made.st_uid == old.st_uid;
  bool groupIsKept = made.st_gid == old.st_gid;
  // Changing the owner may clear mode bits, so the mode is set last.
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

// Replaces or makes a regular file. A rename would also replace a file that this process may not
// write, so that is asked first. A folder that is known to be tidy before the replacement is tidy
// after it; the replacement changes its time, so that is noted anew.
bool replaceRegular(const Place& place, const char* data, std::size_t size, Durability durability) {
  if (!place.isNew() && faccessat(place.folder(), place.name(), W_OK, AT_EACCESS) != 0) {
    return false;
  }
  const bool isTidy = removeStraysIfChanged(place.folder());
  const bool isFlushed = durability == Durability::kFlushed;
  TemporaryFile temporary(place.folder());
  // Until it has inherited the old file's rights, nobody else may open the new one.
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
    flush(place.folder());  // a failure changes no answer: the new contents are in place
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
    return failWith(EFAULT);
  }
  if (!place.find(path)) {
    return false;
  }
  if (place.isNew() || S_ISREG(place.status().st_mode)) {
    return replaceRegular(place, data, size, durability);
  }
  return S_ISDIR(place.status().st_mode) ? failWith(EISDIR) : writeStraight(path, data, size);
}

void removeStrayTemporaries(const char* path) {
  const NoCancellation guard;
  Place place;
  if (path != nullptr && place.enter(path)) {
    removeStraysIn(place.folder());
  }
}

}  // namespace hearth
