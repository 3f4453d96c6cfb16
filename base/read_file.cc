// Reads a file into one buffer. The file's stated size is a hint only: a file in /proc states none,
// and others grow or shrink while they are read. So the buffer starts with room for one byte more
// than stated: one read then usually takes the whole file, and the next meets its end. If there is
// more, the buffer grows by half.
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

// Opens a file without waiting for it, again if a signal interrupts.
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
  // Another file may have taken the name since stat(), so the open one is checked again.
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
    if (got < 0 && errno != EINTR) {  // an interrupted read is tried again
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

// False, with the old buffer untouched, when memory runs out.
bool FileContents::reserve(std::size_t capacity) {
  auto* const grown = static_cast<char*>(std::realloc(data_.get(), capacity));
  if (grown == nullptr) {
    return false;
  }
  static_cast<void>(data_.release());  // realloc has freed or moved it
  data_.reset(grown);
  capacity_ = capacity;
  return true;
}

}  // namespace hearth
