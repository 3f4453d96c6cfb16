#include "base/write_all.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace hearth {
namespace {

// True when the last write can be tried again.
bool mayRetry(int fd, int patienceMilliseconds) {
  if (errno == EINTR) {
    return true;
  }
  if (errno != EAGAIN) {
    return false;
  }
  pollfd room{fd, POLLOUT, 0};
  if (poll(&room, 1, patienceMilliseconds) == 1) {
    return true;
  }
  errno = EAGAIN;
  return false;
}

}  // namespace

bool writeAll(int fd, const char* data, std::size_t size, int patienceMilliseconds) {
  while (size > 0) {
    const ssize_t written = write(fd, data, size);
    if (written < 0) {
      if (!mayRetry(fd, patienceMilliseconds)) {
        return false;
      }
      continue;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace hearth
