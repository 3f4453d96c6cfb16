// The one reader of whole files. The library, the validator and the command all read here.
#ifndef HEARTH_BASE_READ_FILE_H
#define HEARTH_BASE_READ_FILE_H

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace hearth {

// How reading a file ended.
enum class FileReading {
  kMissing,     // no file has the name
  kNotRegular,  // a folder, a device or a pipe has it
  kTooLarge,    // more than the caller takes
  kUnreadable,  // it could not be opened or read, whatever it holds: rights, descriptors, memory,
                // the device; errno says why, and another attempt may succeed
  kRead
};

// The bytes of a file, or of anything else that can be read to its end. It owns them; they are
// valid only after a reading that ended with kRead. For one reading, by one thread.
class FileContents {
 public:
  // JSON is parsed by int-sized counts, so no caller takes more than this.
  static constexpr std::size_t kMostBytes = 0x7fffffff;

  // Reads the whole regular file at path, without ever waiting. A null path names no file. Only
  // regular files are opened: opening a device may do something by itself, such as starting a
  // watchdog, and a process at the other end of a pipe would take the open end for its reader.
  [[nodiscard]] FileReading readFile(const char* path, std::size_t mostBytes = kMostBytes);

  // Reads the rest of what an open descriptor gives, and waits for it where it must. `expected` is
  // the likely number of bytes; a wrong one costs time only. Answers kRead, kTooLarge or
  // kUnreadable.
  [[nodiscard]] FileReading readToEnd(int fd, std::size_t expected, std::size_t mostBytes);

  const char* data() const { return data_.get(); }
  std::size_t size() const { return size_; }

 private:
  struct FreeMemory {
    void operator()(char* memory) const { std::free(memory); }
  };

  [[nodiscard]] bool reserve(std::size_t capacity);

  std::unique_ptr<char, FreeMemory> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace hearth

#endif
