// A file's stated size is a hint only: a file in /proc states none, and others grow or shrink while
// they are read. So the buffer starts with room for one byte more than stated, which usually meets
// the end of the file in the first read, and grows by half when there is more.
#include "base/read_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/no_cancellation.h"
#include "base/unique_fd.h"

namespace hearth {
namespace {

constexpr std::size_t kLeastCapacity = 4096;

// A signal that interrupts the opening is no reason to give up.
UniqueFd openForReading(const char* path) {
  int fd = -1;
  do {
    fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  } while (fd < 0 && errno == EINTR);
  return UniqueFd(fd);
}

}  // namespace

FileReading FileContents::readFile(const char* path, std::size_t mostBytes) {
  const NoCancellation guard;
  struct stat status;
  if (path == nullptr || stat(path, &status) != 0) {
    return FileReading::kMissing;
  }
  if (!S_ISREG(status.st_mode)) {
    return FileReading::kNotRegular;
  }
  const UniqueFd file = openForReading(path);
  if (!file) {
    return errno == ENOENT ? FileReading::kMissing : FileReading::kUnreadable;
  }
  // The name may have changed hands since it was looked at, so the open file is asked again.
  if (fstat(file.get(), &status) != 0) {
    return FileReading::kUnreadable;
  }
  if (!S_ISREG(status.st_mode)) {
    return FileReading::kNotRegular;
  }
  if (status.st_size > static_cast<off_t>(mostBytes)) {
    return FileReading::kTooLarge;
  }
  return readToEnd(file.get(), static_cast<std::size_t>(status.st_size), mostBytes);
}

FileReading FileContents::readToEnd(int fd, std::size_t expected, std::size_t mostBytes) {
  const NoCancellation guard;
  if (!reserve(expected < kLeastCapacity ? kLeastCapacity : expected + 1)) {
    return FileReading::kUnreadable;
  }
  for (;;) {
    const ssize_t got = read(fd, data_.get() + size_, capacity_ - size_);
    if (got < 0 && errno != EINTR) {
      return FileReading::kUnreadable;
    }
    if (got == 0) {
      return FileReading::kRead;
    }
    size_ += got > 0 ? static_cast<std::size_t>(got) : 0;
    if (size_ > mostBytes) {
      return FileReading::kTooLarge;
    }
    if (size_ == capacity_ && !reserve(capacity_ + capacity_ / 2)) {
      return FileReading::kUnreadable;
    }
  }
}

bool FileContents::reserve(std::size_t capacity) {
  auto* const grown = static_cast<char*>(std::realloc(data_.get(), capacity));
  if (grown == nullptr) {
    return false;
  }
  static_cast<void>(data_.release());
  data_.reset(grown);
  capacity_ = capacity;
  return true;
}

}  // namespace hearth
