// The loop around write(): it goes on after a short write, an interruption, and a wait for room in
// a pipe or terminal that does not block.
#include "base/write_all.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace hearth {
namespace {

// Waits where waiting may help. True when the write that has just failed should be tried again;
// else errno says why it failed.
bool waitToRetry(int fd, int patienceMilliseconds) {
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
  errno = EAGAIN;  // poll() may have set another
  return false;
}

}  // namespace

bool writeAll(int fd, const char* data, std::size_t size, int patienceMilliseconds) {
  while (size > 0) {
    const ssize_t written = write(fd, data, size);
    if (written < 0) {
      if (!waitToRetry(fd, patienceMilliseconds)) {
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
