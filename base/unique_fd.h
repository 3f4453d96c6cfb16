// The owner of one file descriptor.
#ifndef HEARTH_BASE_UNIQUE_FD_H
#define HEARTH_BASE_UNIQUE_FD_H

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace hearth {

// Closes the descriptor when it goes out of scope, and leaves errno as it was. A negative number
// means that it holds none.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() {
    if (fd_ >= 0) {
      const int kept = errno;
      close(fd_);
      errno = kept;
    }
  }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }

 private:
  int fd_;
};

}  // namespace hearth

#endif
