#include "bench/floor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace bench {
namespace {

bool flushFolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
  const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool isFlushed = fsync(fd) == 0;
  close(fd);
  return isFlushed;
}

}  // namespace

bool saveByHand(json_object* value, const std::string& path, bool isFlushed) {
  size_t size = 0;
  const char* const text = json_object_to_json_string_length(value, JSON_C_TO_STRING_PRETTY, &size);
  const std::string temporary = path + ".tmp";
  const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  const bool isWritten = write(fd, text, size) == static_cast<ssize_t>(size);
  const bool isSafe = isWritten && (!isFlushed || fsync(fd) == 0);
  close(fd);
  return isSafe && rename(temporary.c_str(), path.c_str()) == 0 &&
         (!isFlushed || flushFolderOf(path));
}

bool appendByHand(const char* path, const char* data, size_t size) {
  const int fd = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  const bool isWritten = write(fd, data, size) == static_cast<ssize_t>(size);
  close(fd);
  return isWritten;
}

}  // namespace bench
