// Reads a file as json-c's own file reader does (the parser's default depth, text behind the value
// ignored), but whole and at once, without ever waiting, and without that reader's shared error
// text.
#include "json/file_read.h"

#include <fcntl.h>
#include <json-c/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

#include "log/no_cancellation.h"
#include "log/unique_fd.h"

namespace hearth {
namespace {

struct FreeTokener {
  void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
};
struct FreeMemory {
  void operator()(char* memory) const { free(memory); }
};
using Tokener = std::unique_ptr<json_tokener, FreeTokener>;

// The contents of a file; the parser counts their bytes in an int.
class Contents {
 public:
  // False when the file cannot be read whole.
  bool read(int fd);
  const char* data() const { return data_.get(); }
  int size() const { return static_cast<int>(size_); }

 private:
  static constexpr std::size_t kMaxSize = INT_MAX;
  static constexpr std::size_t kLeastCapacity = 4096;

  bool reserve(std::size_t capacity);

  std::unique_ptr<char, FreeMemory> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

bool Contents::reserve(std::size_t capacity) {
  auto* const grown = static_cast<char*>(realloc(data_.get(), capacity));
  if (grown == nullptr) {
    return false;
  }
  static_cast<void>(data_.release());
  data_.reset(grown);
  capacity_ = capacity;
  return true;
}

// The size that the file states is a hint: a file in /proc states none, others may grow or shrink.
// One byte more than stated makes the end of the file visible without growing. What was opened may
// not be what was asked about before.
bool Contents::read(int fd) {
  struct stat status;
  if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size > static_cast<off_t>(kMaxSize)) {
    return false;
  }
  const auto stated = static_cast<std::size_t>(status.st_size);
  if (!reserve(stated < kLeastCapacity ? kLeastCapacity : stated + 1)) {
    return false;
  }
  for (;;) {
    const ssize_t got = ::read(fd, data_.get() + size_, capacity_ - size_);
    if (got == 0) {
      return size_ <= kMaxSize;
    }
    if (got < 0) {
      if (errno != EINTR) {
        return false;
      }
      continue;
    }
    size_ += static_cast<std::size_t>(got);
    if (size_ == capacity_ && (size_ > kMaxSize || !reserve(capacity_ + capacity_ / 2))) {
      return false;
    }
  }
}

json_object* readRegular(const char* path) {
  const UniqueFd file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  Contents contents;
  if (!file || !contents.read(file.get())) {
    return nullptr;
  }
  const Tokener tokener(json_tokener_new());
  if (tokener == nullptr) {
    return nullptr;
  }
  errno = 0;
  JsonRef value(json_tokener_parse_ex(tokener.get(), contents.data(), contents.size()));
  // The parser leaves out what it finds no memory for.
  return errno == ENOMEM ? nullptr : value.release();
}

}  // namespace

// Only a regular file is opened: opening a device may do something by itself, such as starting a
// watchdog, and who waits at the other end of a pipe would take the open end for its reader.
JsonFile findJsonFile(const char* path) {
  const NoCancellation guard;
  struct stat status;
  if (path == nullptr || stat(path, &status) != 0) {
    return {};
  }
  return {true, JsonRef(S_ISREG(status.st_mode) ? readRegular(path) : nullptr)};
}

json_object* readJsonFile(const char* path) {
  return findJsonFile(path).value.release();
}

}  // namespace hearth
