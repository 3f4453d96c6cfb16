// Reads a file as json-c's own file reader does (the parser's default depth, text behind the value
// ignored), but whole and at once, without ever waiting, and without that reader's shared error
// text. And the end of the file ends a value: a lone number or word needs no blank behind it.
#include "json/file_read.h"

#include <fcntl.h>
#include <json-c/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

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
  // kValue when they are there whole.
  Reading read(int fd);
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
Reading Contents::read(int fd) {
  struct stat status;
  if (fstat(fd, &status) != 0) {
    return Reading::kUnreadable;
  }
  if (!S_ISREG(status.st_mode) || status.st_size > static_cast<off_t>(kMaxSize)) {
    return Reading::kNoValue;
  }
  const auto stated = static_cast<std::size_t>(status.st_size);
  if (!reserve(stated < kLeastCapacity ? kLeastCapacity : stated + 1)) {
    return Reading::kUnreadable;
  }
  for (;;) {
    const ssize_t got = ::read(fd, data_.get() + size_, capacity_ - size_);
    if (got < 0 && errno != EINTR) {
      return Reading::kUnreadable;
    }
    if (got == 0) {
      return Reading::kValue;
    }
    size_ += got > 0 ? static_cast<std::size_t>(got) : 0;
    if (size_ > kMaxSize) {
      return Reading::kNoValue;
    }
    if (size_ == capacity_ && !reserve(capacity_ + capacity_ / 2)) {
      return Reading::kUnreadable;
    }
  }
}

UniqueFd openForReading(const char* path) {
  int fd = -1;
  do {
    fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  } while (fd < 0 && errno == EINTR);
  return UniqueFd(fd);
}

JsonFile parse(const Contents& contents) {
  const Tokener tokener(json_tokener_new());
  if (tokener == nullptr) {
    return {Reading::kUnreadable, nullptr};
  }
  errno = 0;
  JsonRef value(json_tokener_parse_ex(tokener.get(), contents.data(), contents.size()));
  if (json_tokener_get_error(tokener.get()) == json_tokener_continue) {
    value.reset(json_tokener_parse_ex(tokener.get(), "", 1));  // its NUL is an end to the parser
  }
  // The parser leaves out what it finds no memory for.
  if (errno == ENOMEM) {
    return {Reading::kUnreadable, nullptr};
  }
  const Reading reading = value != nullptr ? Reading::kValue : Reading::kNoValue;
  return {reading, std::move(value)};
}

JsonFile readRegular(const char* path) {
  const UniqueFd file = openForReading(path);
  if (!file) {
    return {errno == ENOENT ? Reading::kMissing : Reading::kUnreadable, nullptr};
  }
  Contents contents;
  const Reading read = contents.read(file.get());
  return read == Reading::kValue ? parse(contents) : JsonFile{read, nullptr};
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
  return S_ISREG(status.st_mode) ? readRegular(path) : JsonFile{Reading::kNoValue, nullptr};
}

json_object* readJsonFile(const char* path) {
  return findJsonFile(path).value.release();
}

}  // namespace hearth
